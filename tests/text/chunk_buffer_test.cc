#include "vosmere/text/chunk_buffer.h"

#include <limits>
#include <new>
#include <random>

#include "tests/support/test.h"

namespace vosmere::test::chunk_buffer {

bool Append(CChunkBuffer& buffer, const std::string& bytes) {
  return buffer.Append(bytes.data(), static_cast<int>(bytes.size()));
}

/// An append that the limit must refuse without reading a byte.
bool AppendTooMuch(CChunkBuffer& buffer, int length) {
  volatile int unknown = length;
  return buffer.Append("", unknown);
}

LONG Total(const CChunkBuffer& buffer) {
  Chunk* head = nullptr;
  return buffer.Get(&head);
}

/// The bytes; every chunk but the last must be full.
std::string Content(const CChunkBuffer& buffer) {
  std::string content;
  Chunk* chunk = nullptr;
  for (buffer.Get(&chunk); chunk; chunk = chunk->next) {
    content.append(chunk->data, chunk->used);
    EXPECT_TRUE(chunk->used == 4096 || !chunk->next) << chunk->used;
  }
  return content;
}

TEST(ChunkBuffer, HoldsWhatIsAppendedInFullChunksThatNeverMove) {
  const int lengths[] = {-1, 0, 1, 5, 96, 4000, 4095, 4096, 4097, 10000};
  std::mt19937 random(34);
  const long before = LiveAllocations();
  for (int round = 0; round < 300 && !HasFailure(); ++round) {
    CChunkBuffer buffer;
    std::string all;
    Chunk empty, *first = &empty;
    EXPECT_EQ(buffer.Get(&first), 0);
    EXPECT_EQ(first, &empty) << "an empty one leaves the head alone";
    for (auto count = 1 + random() % 6; count > 0; --count) {
      const int length = lengths[random() % std::size(lengths)];
      const std::string bytes(length > 0 ? length : 0, static_cast<char>('a' + count));
      EXPECT_TRUE(buffer.Append(bytes.data(), length));
      all += bytes;
      if (first == &empty) buffer.Get(&first);
      EXPECT_EQ(random() % 2 ? Content(buffer) : all, all);
    }
    Chunk* head = &empty;
    EXPECT_EQ(buffer.Get(&head), static_cast<LONG>(all.size()));
    EXPECT_EQ(head, first);
    EXPECT_EQ(Content(buffer), all);
    buffer.Clear();
    EXPECT_EQ(Total(buffer), 0);
    EXPECT_TRUE(Append(buffer, "again"));
    EXPECT_EQ(Content(buffer), "again");
  }
  EXPECT_EQ(LiveAllocations(), before);
}

TEST(ChunkBuffer, TakesAllUpToTheLimitAndARefusedAppendCountsForEver) {
  CChunkBuffer buffer;
  const std::string megabyte(1 << 20, 'x');
  for (int i = 0; i < 99; ++i) ASSERT_TRUE(Append(buffer, megabyte));
  EXPECT_TRUE(Append(buffer, megabyte.substr(1)));
  EXPECT_FALSE(Append(buffer, "x"));
  EXPECT_EQ(Total(buffer), CChunkBuffer::kLimit);
  EXPECT_FALSE(Append(buffer, "x"));
  EXPECT_EQ(Total(buffer), CChunkBuffer::kLimit + 1);
  constexpr LONG kMost = std::numeric_limits<LONG>::max();
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(AppendTooMuch(buffer, kMost));
  EXPECT_EQ(Total(buffer), kMost) << "instead of wrapping around";
  EXPECT_FALSE(Append(buffer, ""));

  CChunkBuffer small;
  EXPECT_TRUE(Append(small, "kept"));
  EXPECT_FALSE(AppendTooMuch(small, kMost) || Append(small, "x"));
  EXPECT_EQ(Content(small), "kept");
}

TEST(ChunkBuffer, TakesTheChunksOfAnother) {
  const std::string megabyte(1 << 20, 'm');
  for (const std::size_t first : {0, 5, 4096, 5000})
    for (const std::size_t second : {0, 7, 4096, 9000}) {
      const std::string a(first, 'a'), b(second, 'b');
      CChunkBuffer buffer, other;
      EXPECT_TRUE((a.empty() || Append(buffer, a)) && (b.empty() || Append(other, b)));
      buffer.Take(other);
      EXPECT_TRUE(Append(buffer, "c") && Append(other, megabyte));
      EXPECT_EQ(buffer.Joined().get(), a + b + "c");
      EXPECT_EQ(Total(buffer), static_cast<LONG>(first + second + 1));
      if (first + second < 14000) continue;  // the limit takes 100 MB
      for (int i = 1; i < 99; ++i) Append(other, megabyte);
      while (Total(buffer) < (1 << 20) - 2) Append(buffer, "x");
      buffer.Take(other);
      EXPECT_EQ(Total(other), 0);
      EXPECT_TRUE(Append(buffer, "x"));
      EXPECT_FALSE(Append(buffer, "x"));
      Append(other, megabyte);
      buffer.Take(other);
      EXPECT_EQ(Total(buffer), CChunkBuffer::kLimit + (1 << 20)) << "counts like a refused append";
    }
}

TEST(ChunkBuffer, WithoutMemoryItThrowsAndKeepsWhatItHas) {
  CChunkBuffer buffer;
  Append(buffer, "kept");
  const std::string more(5000, 'x');
  {
    const FailingMemory memory(0);
    EXPECT_THROW(Append(buffer, more), std::bad_alloc);
  }
  EXPECT_EQ(Content(buffer).substr(0, 4), "kept");
  EXPECT_TRUE(Append(buffer, more));
}

}  // namespace vosmere::test::chunk_buffer
