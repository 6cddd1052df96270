#pragma once

#include <cstdint>
#include <cstring>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// One piece of a CChunkBuffer, which owns it.
struct Chunk {
  char* data;   ///< a block of CChunkBuffer::kChunkSize bytes
  int used;     ///< bytes filled, from the start
  Chunk* next;  ///< null at the end
};

/// An append-only byte buffer of 4096-byte chunks. What was appended never moves.
class VOSMERE_API CChunkBuffer {
 public:
  static constexpr int kChunkSize = 4096;
  /// The total stays below this: 100 MiB.
  static constexpr LONG kLimit = 104857600;

  CChunkBuffer() = default;
  CChunkBuffer(const CChunkBuffer&) = delete;
  CChunkBuffer& operator=(const CChunkBuffer&) = delete;
  virtual ~CChunkBuffer();

  /// Appends `length` bytes. False, with nothing appended, when the total would reach the limit.
  /// Throws std::bad_alloc when memory runs out. A length below 0 changes nothing.
  /// Intended: a refused append counts in the total all the same, and the total never comes down
  /// again short of Clear(). So a document that lost a piece is known as one for ever, and is never
  /// saved as if it were whole. Appending 0 bytes counts as an append: it makes the first chunk,
  /// and is refused where the limit has been reached.
  bool Append(const void* bytes, int length) {
    if (length < 0) return true;
    char* const room = length > 0 ? Room(length) : nullptr;
    if (!room) return AppendInParts(static_cast<const char*>(bytes), length);
    std::memcpy(room, bytes, static_cast<std::size_t>(length));
    Use(length);
    return true;
  }

  /// Where the next `length` bytes go, to be filled in place; null unless the last chunk holds them
  /// all. Use() then takes those that were filled.
  char* Room(int length) const { return length <= end_ - at_ ? at_ : nullptr; }
  void Use(int length) { at_ += length; }

  /// Returns the total of all appends, refused ones included (saturated at the largest LONG), and
  /// stores the first chunk. A buffer without chunks returns 0 and leaves `*head` as it is. The
  /// chunks tell what is in them at the time of the call.
  LONG Get(Chunk** head) const;

  /// A copy of all that was appended in one block, with a zero byte behind it; null without memory.
  OwnedPointer<char, WithArrayDelete> Joined() const;

  /// Frees every chunk and begins anew.
  void Clear();

 private:
  bool AppendInParts(const char* bytes, int length);
  void NewChunk();
  int LastUsed() const { return tail_ ? static_cast<int>(at_ - tail_->data) : 0; }
  std::int64_t Total() const { return std::int64_t{before_} + LastUsed(); }

  LONG before_ = 0;  // the total without what the last chunk holds
  Chunk* head_ = nullptr;
  Chunk* tail_ = nullptr;
  char* at_ = nullptr;   // where the last chunk goes on
  char* end_ = nullptr;  // where it is full, or the total would reach the limit
};

}  // namespace vosmere
