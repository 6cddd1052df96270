#include "vosmere/text/chunk_buffer.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <string>
#include <vector>

#include "tests/support/failing_memory.h"

namespace vosmere::test {
namespace {

bool Append(CChunkBuffer& buffer, const std::string& bytes) {
  return buffer.Append(bytes.data(), static_cast<int>(bytes.size()));
}

/// An append that the limit must refuse, so that no byte is looked at.
bool AppendTooMuch(CChunkBuffer& buffer, int length) {
  volatile int unknown = length;
  return buffer.Append("", unknown);
}

Chunk* Head(const CChunkBuffer& buffer) {
  Chunk* head = nullptr;
  buffer.Get(&head);
  return head;
}

LONG Total(const CChunkBuffer& buffer) {
  Chunk* head = nullptr;
  return buffer.Get(&head);
}

std::vector<int> Sizes(const CChunkBuffer& buffer) {
  std::vector<int> sizes;
  for (const Chunk* chunk = Head(buffer); chunk; chunk = chunk->next) sizes.push_back(chunk->used);
  return sizes;
}

std::string Content(const CChunkBuffer& buffer) {
  std::string content;
  for (const Chunk* chunk = Head(buffer); chunk; chunk = chunk->next)
    content.append(chunk->data, chunk->used);
  return content;
}

TEST(ChunkBuffer, FillsChunkAfterChunk) {
  const struct {
    std::vector<int> appends, sizes;
  } cases[] = {
      {{4096}, {4096}},       {{4097}, {4096, 1}},        {{10000}, {4096, 4096, 1808}},
      {{8192}, {4096, 4096}}, {{4000, 96, 1}, {4096, 1}}, {{4000, 5000}, {4096, 4096, 808}},
      {{0, -1, 5, 0}, {5}}};
  for (const auto& c : cases) {
    CChunkBuffer buffer;
    std::string expected;
    for (const int length : c.appends) {
      const std::string bytes(length > 0 ? length : 0,
                              static_cast<char>('a' + expected.size() % 26));
      EXPECT_TRUE(buffer.Append(bytes.data(), length));
      expected += bytes;
    }
    EXPECT_EQ(Sizes(buffer), c.sizes);
    EXPECT_EQ(Content(buffer), expected);
    EXPECT_EQ(Total(buffer), static_cast<LONG>(expected.size()));
  }
}

TEST(ChunkBuffer, WhatWasAppendedNeverMoves) {
  CChunkBuffer buffer;
  Append(buffer, "first");
  const char* const place = Head(buffer)->data;
  Append(buffer, std::string(10000, 'x'));
  EXPECT_EQ(Head(buffer)->data, place);
}

TEST(ChunkBuffer, AnEmptyOneLeavesTheHeadAlone) {
  Chunk other;
  Chunk* head = &other;
  CChunkBuffer buffer;
  EXPECT_EQ(buffer.Get(&head), 0);
  EXPECT_EQ(head, &other);
}

TEST(ChunkBuffer, ClearBeginsAnew) {
  const long before = LiveAllocations();
  CChunkBuffer buffer;
  Append(buffer, std::string(10000, 'x'));
  buffer.Clear();
  EXPECT_EQ(LiveAllocations(), before);
  EXPECT_EQ(Total(buffer), 0);
  EXPECT_TRUE(Append(buffer, "again"));
  EXPECT_EQ(Content(buffer), "again");
}

TEST(ChunkBuffer, ARefusedAppendCountsForEver) {
  CChunkBuffer buffer;
  Append(buffer, "kept");
  EXPECT_FALSE(AppendTooMuch(buffer, CChunkBuffer::kLimit - 4))
      << "the total must stay below the limit";
  EXPECT_EQ(Total(buffer), CChunkBuffer::kLimit);
  EXPECT_FALSE(Append(buffer, "x"));
  EXPECT_EQ(Total(buffer), CChunkBuffer::kLimit + 1);
  EXPECT_EQ(Content(buffer), "kept");
}

TEST(ChunkBuffer, TheTotalSaturatesInsteadOfComingRound) {
  CChunkBuffer buffer;
  Append(buffer, "kept");
  constexpr LONG kMost = std::numeric_limits<LONG>::max();
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(AppendTooMuch(buffer, kMost));
  EXPECT_EQ(Total(buffer), kMost);
  EXPECT_FALSE(Append(buffer, "x"));
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
  EXPECT_EQ(Content(buffer).substr(0, 4), "kept");
  EXPECT_TRUE(Append(buffer, more));
}

}  // namespace
}  // namespace vosmere::test
