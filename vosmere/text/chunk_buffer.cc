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
  const std::int64_t total = std::int64_t{total_} + length;
  total_ = static_cast<LONG>(std::min<std::int64_t>(total, std::numeric_limits<LONG>::max()));
  if (total >= kLimit) return false;

  while (length > 0) {
    if (!tail_ || tail_->used == kChunkSize) NewChunk();
    const int part = std::min(length, kChunkSize - tail_->used);
    std::memcpy(tail_->data + tail_->used, bytes, part);
    tail_->used += part;
    bytes += part;
    length -= part;
  }
  return true;
}

LONG CChunkBuffer::Get(Chunk** head) const {
  if (!head_) return 0;
  *head = head_;
  return total_;
}

void CChunkBuffer::Clear() {
  while (head_) ::operator delete(std::exchange(head_, head_->next));
  tail_ = nullptr;
  total_ = 0;
}

// Record and block are one piece of memory, so there is one allocation to fail.
Chunk* CChunkBuffer::NewChunk() {
  void* const memory = ::operator new(sizeof(Chunk) + kChunkSize);
  auto* const chunk = new (memory) Chunk{static_cast<char*>(memory) + sizeof(Chunk), 0, nullptr};
  (tail_ ? tail_->next : head_) = chunk;
  return tail_ = chunk;
}

}  // namespace vosmere
