#include "vosmere/text/chunk_buffer.h"

#include <limits>
#include <new>

#include "tests/support/test.h"

namespace vosmere::test::chunk_buffer {

bool Append(CChunkBuffer& buffer, const std::string& bytes) {
  return buffer.Append(bytes.data(), static_cast<int>(bytes.size()));
}

/// An append that the limit must refuse, so that no byte is looked at.
bool AppendTooMuch(CChunkBuffer& buffer, int length) {
  volatile int unknown = length;
  return buffer.Append("", unknown);
}

struct Got {
  Chunk* head = nullptr;
  LONG total = 0;
  std::vector<int> sizes;
  std::string content;
};

Got Get(const CChunkBuffer& buffer) {
  Got got;
  got.total = buffer.Get(&got.head);
  for (const Chunk* chunk = got.head; chunk; chunk = chunk->next) {
    got.sizes.push_back(chunk->used);
    got.content.append(chunk->data, chunk->used);
  }
  return got;
}

TEST(ChunkBuffer, FillsChunkAfterChunk) {
  const struct {
    std::vector<int> appends, sizes;
  } cases[] = {
      {{4096}, {4096}},
      {{4097}, {4096, 1}},
      {{10000}, {4096, 4096, 1808}},
      {{8192}, {4096, 4096}},
      {{4000, 96, 1}, {4096, 1}},
      {{4000, 5000}, {4096, 4096, 808}},
      {{0, -1, 5, 0}, {5}},
      {{0}, {0}},
  };
  for (const auto& c : cases) {
    CChunkBuffer buffer;
    std::string expected;
    const char* place = nullptr;
    for (const int length : c.appends) {
      const std::string bytes(length > 0 ? length : 0,
                              static_cast<char>('a' + expected.size() % 26));
      EXPECT_TRUE(buffer.Append(bytes.data(), length));
      expected += bytes;
      if (!place) place = Get(buffer).head->data;
    }
    const Got got = Get(buffer);
    EXPECT_EQ(got.sizes, c.sizes);
    EXPECT_EQ(got.content, expected);
    EXPECT_EQ(got.total, static_cast<LONG>(expected.size()));
    EXPECT_EQ(got.head->data, place) << "what was appended never moves";
  }
}

TEST(ChunkBuffer, ClearBeginsAnew) {
  const long before = LiveAllocations();
  CChunkBuffer buffer;
  Append(buffer, std::string(10000, 'x'));
  buffer.Clear();
  EXPECT_EQ(LiveAllocations(), before);
  Chunk other;
  Chunk* head = &other;
  EXPECT_EQ(buffer.Get(&head), 0);
  EXPECT_EQ(head, &other) << "an empty one leaves the head alone";
  EXPECT_TRUE(Append(buffer, "again"));
  EXPECT_EQ(Get(buffer).content, "again");
}

TEST(ChunkBuffer, ARefusedAppendCountsForEver) {
  CChunkBuffer buffer;
  Append(buffer, "kept");
  EXPECT_FALSE(AppendTooMuch(buffer, CChunkBuffer::kLimit - 4)) << "stays below the limit";
  EXPECT_EQ(Get(buffer).total, CChunkBuffer::kLimit);
  EXPECT_FALSE(Append(buffer, "x"));
  EXPECT_EQ(Get(buffer).total, CChunkBuffer::kLimit + 1);
  constexpr LONG kMost = std::numeric_limits<LONG>::max();
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(AppendTooMuch(buffer, kMost));
  EXPECT_EQ(Get(buffer).total, kMost) << "instead of coming round";
  EXPECT_FALSE(Append(buffer, "x") || Append(buffer, ""));
  EXPECT_EQ(Get(buffer).content, "kept");
}

TEST(ChunkBuffer, TakesAllUpToTheLimit) {
  CChunkBuffer buffer;
  const std::string megabyte(1 << 20, 'x');
  for (int i = 0; i < 99; ++i) ASSERT_TRUE(Append(buffer, megabyte));
  EXPECT_TRUE(Append(buffer, megabyte.substr(1)));
  EXPECT_FALSE(Append(buffer, "x"));
}

TEST(ChunkBuffer, WithoutMemoryItThrowsAndKeepsWhatItHas) {
  CChunkBuffer buffer;
  Append(buffer, "kept");
  const std::string more(5000, 'x');
  {
    const FailingMemory memory(0);
    EXPECT_THROW(Append(buffer, more), std::bad_alloc);
  }
  EXPECT_EQ(Get(buffer).content.substr(0, 4), "kept");
  EXPECT_TRUE(Append(buffer, more));
}

}  // namespace vosmere::test::chunk_buffer
