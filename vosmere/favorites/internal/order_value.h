// Reads the shell's "Order" value from bytes that are not trusted. All integers are little-endian.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "vosmere/base/types.h"
#include "vosmere/favorites/order_record.h"

namespace vosmere {

/// Bytes that the caller owns. Reading beyond their end gives zero, so that readers of damaged
/// records need no bounds checks of their own.
class ByteView {
 public:
  ByteView(const unsigned char* data, std::size_t size) : data_(data), size_(size) {}

  std::size_t size() const { return size_; }
  const unsigned char* data() const { return data_; }

  ByteView From(std::size_t at) const {
    return at < size_ ? ByteView(data_ + at, size_ - at) : ByteView(data_, 0);
  }
  ByteView First(std::size_t size) const { return {data_, size < size_ ? size : size_}; }

  ULONG Byte(std::size_t at) const { return at < size_ ? data_[at] : 0; }
  unsigned short Half(std::size_t at) const {
    return static_cast<unsigned short>(Byte(at) | Byte(at + 1) << 8);
  }
  ULONG Word(std::size_t at) const { return Half(at) | ULONG{Half(at + 2)} << 16; }

  /// The text at the start, up to its terminating null or the end of the bytes. Nothing when it has
  /// CFavorite::kNameLimit characters or more. Throws std::bad_alloc.
  std::optional<std::string> Text8() const;
  std::optional<std::u16string> Text16() const;

 private:
  const unsigned char* data_;
  std::size_t size_;
};

/// A record. Its view starts at the record's first byte and ends with the whole value.
struct OrderEntry {
  static constexpr std::size_t kItemAt = 8;
  static constexpr std::size_t kNameAt = 22;
  static constexpr ULONG kIsFile = 2;
  static constexpr ULONG kIsWide = 4;

  ByteView bytes;
  ULONG index;

  unsigned short Flags() const { return bytes.Half(10); }
  /// The stored position, or the index of the record when none is stored. Negative for an invalid
  /// position.
  LONG Position() const;
  /// Copies the fields that both layouts have.
  void CopyTo(COrderRecord& record) const;
  /// The name at offset kNameAt. An 8-bit character becomes the code unit with the same value.
  /// Nothing when the name is too long. Throws std::bad_alloc.
  std::optional<std::u16string> Name() const;
  /// The long name, which Windows XP and later systems store in an extension block after the name.
  /// Nothing when there is no such block or its version is not known. Throws std::bad_alloc.
  std::optional<std::u16string> LongName() const;
};

/// Walks the records of a value.
class OrderValue {
 public:
  OrderValue(const unsigned char* bytes, std::size_t size) : bytes_(bytes, size) {}

  /// Whether the value is long enough for its header.
  bool HasHead() const { return bytes_.size() >= kHeadSize; }
  /// Copies the header.
  void CopyTo(COrderHead& head) const;
  /// The number of records by the header, which is not trusted.
  ULONG Count() const { return bytes_.Word(16); }

  /// Returns the first, then the next record. Nothing at the end, and after a record whose size is
  /// invalid.
  std::optional<OrderEntry> Next();

 private:
  static constexpr std::size_t kHeadSize = 20;

  ByteView bytes_;
  std::size_t at_ = kHeadSize;
  ULONG index_ = 0;
};

}  // namespace vosmere
