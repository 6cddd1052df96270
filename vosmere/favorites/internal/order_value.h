// The shell's "Order" value, as bytes that may be anything. All integers are little-endian.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "vosmere/base/types.h"
#include "vosmere/favorites/order_record.h"

namespace vosmere {

/// Bytes that somebody else owns. What lies beyond them reads as zero.
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

  /// The text at the start, up to its terminating zero or the end of the bytes; nothing when it has
  /// CFavorite::kNameLimit characters or more. Throw std::bad_alloc.
  std::optional<std::string> Text8() const;
  std::optional<std::u16string> Text16() const;

 private:
  const unsigned char* data_;
  std::size_t size_;
};

/// A record, from its first byte to the end of the value.
struct OrderEntry {
  static constexpr std::size_t kItemAt = 8;
  static constexpr std::size_t kNameAt = 22;
  static constexpr ULONG kIsFile = 2;
  static constexpr ULONG kIsWide = 4;

  ByteView bytes;
  ULONG index;

  unsigned short Flags() const { return bytes.Half(10); }
  /// As stored, or the index when none is; negative for what is no position.
  LONG Position() const;
  /// The fields that every layout has.
  void CopyTo(COrderRecord& record) const;
  /// The name as it stands at its place. A byte is the character of the same value. Nothing when
  /// it is too long. Throws std::bad_alloc.
  std::optional<std::u16string> Name() const;
  /// The long name that systems from Windows XP on keep in a block behind that one; nothing when
  /// there is no such block, or it is of a version that is not known. Throws std::bad_alloc.
  std::optional<std::u16string> LongName() const;
};

/// Goes over the records of a value.
class OrderValue {
 public:
  OrderValue(const unsigned char* bytes, std::size_t size) : bytes_(bytes, size) {}

  bool HasHead() const { return bytes_.size() >= kHeadSize; }
  void CopyTo(COrderHead& head) const;
  ULONG Count() const { return bytes_.Word(16); }

  /// The first, then the next record; nothing at the end, and when the value is no longer one.
  std::optional<OrderEntry> Next();

 private:
  static constexpr std::size_t kHeadSize = 20;

  ByteView bytes_;
  std::size_t at_ = kHeadSize;
  ULONG index_ = 0;
};

}  // namespace vosmere
