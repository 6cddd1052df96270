// The slow path of Append, and the chunks themselves.
#include "vosmere/text/chunk_buffer.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

namespace vosmere {

CChunkBuffer::~CChunkBuffer() {
  Clear();
}

bool CChunkBuffer::AppendInParts(const char* bytes, int length) {
  const std::int64_t total = Total() + length;
  if (total >= kLimit) {
    Refuse(total);
    return false;
  }
  // Even for 0 bytes, so that the buffer differs from one that nothing was appended to.
  if (!head_) NewChunk();
  while (length > 0) {
    if (at_ == end_) NewChunk();
    const int part = std::min(length, static_cast<int>(end_ - at_));
    std::memcpy(at_, bytes, part);
    Use(part);
    bytes += part;
    length -= part;
  }
  return true;
}

// Counts the refused bytes and leaves no room, so that all later appends come to AppendInParts and
// are refused as well.
void CChunkBuffer::Refuse(std::int64_t total) {
  constexpr std::int64_t kMost = std::numeric_limits<LONG>::max();
  before_ = static_cast<LONG>(std::min(total, kMost)) - LastUsed();
  end_ = at_;
}

void CChunkBuffer::Take(CChunkBuffer& other) {
  const std::int64_t total = Total() + other.Total();
  if (total >= kLimit) {
    Refuse(total);
    other.Clear();
  }
  if (!other.head_) return;
  if (tail_) tail_->used = LastUsed();
  before_ = static_cast<LONG>(total) - other.LastUsed();
  (tail_ ? tail_->next : head_) = std::exchange(other.head_, nullptr);
  tail_ = other.tail_;
  at_ = other.at_;
  SetEnd();
  other.Clear();
}

LONG CChunkBuffer::Get(Chunk** head) const {
  if (!head_) return 0;
  tail_->used = LastUsed();
  *head = head_;
  return static_cast<LONG>(Total());
}

OwnedPointer<char, WithArrayDelete> CChunkBuffer::Joined() const {
  Chunk* chunk = nullptr;
  Get(&chunk);
  std::size_t total = 0;
  for (const Chunk* c = chunk; c; c = c->next) total += static_cast<std::size_t>(c->used);
  OwnedPointer<char, WithArrayDelete> bytes(new (std::nothrow) char[total + 1]);
  if (!bytes) return bytes;
  char* end = bytes.get();
  for (; chunk; chunk = chunk->next) end = std::copy_n(chunk->data, chunk->used, end);
  *end = 0;
  return bytes;
}

void CChunkBuffer::Clear() {
  while (head_) ::operator delete(std::exchange(head_, head_->next));
  tail_ = nullptr;
  at_ = end_ = nullptr;
  before_ = 0;
}

// The record and its block are one allocation, so that only one can fail.
void CChunkBuffer::NewChunk() {
  void* const memory = ::operator new(sizeof(Chunk) + kChunkSize);
  char* const data = static_cast<char*>(memory) + sizeof(Chunk);
  auto* const chunk = new (memory) Chunk{data, kChunkSize, nullptr};
  if (tail_) tail_->used = LastUsed();  // the record may still hold what Get() stored
  before_ += LastUsed();
  (tail_ ? tail_->next : head_) = chunk;
  tail_ = chunk;
  at_ = data;
  SetEnd();
}

// Ends the room of the last chunk below the limit, so that the fast path of Append need not check
// it.
void CChunkBuffer::SetEnd() {
  end_ = tail_->data + std::min(kChunkSize, kLimit - 1 - before_);
}

}  // namespace vosmere
