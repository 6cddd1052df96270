// The byte buffer that document writers append to.
#pragma once

#include <cstdint>
#include <cstring>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// One chunk of a CChunkBuffer. Owned by the buffer.
struct Chunk {
  char* data;   ///< block of CChunkBuffer::kChunkSize bytes
  int used;     ///< number of bytes in use, from the start of the block
  Chunk* next;  ///< null in the last chunk
};

/// An append-only byte buffer made of 4096-byte chunks. Bytes that were appended are never moved,
/// so a document grows without being copied. Not thread-safe.
class VOSMERE_API CChunkBuffer {
 public:
  static constexpr int kChunkSize = 4096;
  /// 100 MiB. The total number of bytes is always smaller.
  static constexpr LONG kLimit = 104857600;

  CChunkBuffer() = default;
  CChunkBuffer(const CChunkBuffer&) = delete;
  CChunkBuffer& operator=(const CChunkBuffer&) = delete;
  virtual ~CChunkBuffer();

  /// Appends a copy of `length` bytes. Returns false, with nothing appended, when the total would
  /// reach kLimit. Throws std::bad_alloc when memory runs out. A negative length changes nothing
  /// and returns true.
  /// Intended: a refused append still counts towards the total, which only Clear() resets. Every
  /// later append is refused as well, so the total shows that a part of the document is missing,
  /// and it is never saved as if it were complete. An append of 0 bytes counts as an append: it
  /// creates the first chunk, and it is refused once the limit has been reached.
  bool Append(const void* bytes, int length) {
    if (length < 0) return true;
    char* const room = length > 0 ? Room(length) : nullptr;
    if (!room) return AppendInParts(static_cast<const char*>(bytes), length);
    std::memcpy(room, bytes, static_cast<std::size_t>(length));
    Use(length);
    return true;
  }

  /// Room() returns where to write the next `length` bytes, or null when they do not fit into the
  /// last chunk; Use() then appends the first `length` bytes written there. For converting text
  /// directly into the buffer.
  char* Room(int length) const { return length <= end_ - at_ ? at_ : nullptr; }
  void Use(int length) { at_ += length; }

  /// Moves the chunks of another buffer, which is empty then, to the end of this one, without
  /// copying them. If the total would reach kLimit, the chunks are freed and count as refused.
  void Take(CChunkBuffer& other);

  /// Stores the first chunk and returns the total of all appends, refused ones included, at most
  /// the largest LONG. If the buffer has no chunk, returns 0 and does not change `*head`. The
  /// chunks stay owned by the buffer, and their `used` is valid until the next append.
  LONG Get(Chunk** head) const;

  /// All bytes in one new block with a null byte after them; null when memory runs out.
  OwnedPointer<char, WithArrayDelete> Joined() const;

  /// Frees all chunks. The buffer is empty then and can be used again.
  void Clear();

 private:
  bool AppendInParts(const char* bytes, int length);
  void Refuse(std::int64_t total);
  void NewChunk();
  int LastUsed() const { return tail_ ? static_cast<int>(at_ - tail_->data) : 0; }
  std::int64_t Total() const { return std::int64_t{before_} + LastUsed(); }
  void SetEnd();

  LONG before_ = 0;  // the total without the bytes in the last chunk
  Chunk* head_ = nullptr;
  Chunk* tail_ = nullptr;
  char* at_ = nullptr;   // where the next byte goes in the last chunk
  char* end_ = nullptr;  // the end of the room: of the chunk, or where the limit is
};

}  // namespace vosmere
