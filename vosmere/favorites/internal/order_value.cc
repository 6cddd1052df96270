// Walks the records of a stored menu order, and reads their names.
#include "vosmere/favorites/internal/order_value.h"

#include <algorithm>

#include "vosmere/favorites/favorite.h"
#include "vosmere/favorites/order_record.h"

namespace vosmere {
namespace {

constexpr ULONG kNoPosition = 0xFFFFFFFB;  // -5: the record's index is the position
constexpr ULONG kBlockMark = 0xBEEF0004;   // signature of the block with the long name

/// Offset of the long name in an extension block of that version; 0 for a version that is not
/// known.
std::size_t LongNameAt(ULONG version) {
  switch (version) {
    case 3: return 20;  // Windows XP, Server 2003
    case 7: return 38;  // Windows Vista
    case 8: return 42;  // Windows 7
    case 9: return 46;  // Windows 8 and later
    default: return 0;
  }
}

/// Size of the name at the start in bytes, including the terminating null.
std::size_t NameSize(ByteView bytes, bool isWide) {
  const std::size_t unit = isWide ? 2 : 1;
  std::size_t at = 0;
  while (at < bytes.size() && (isWide ? bytes.Half(at) : bytes.Byte(at))) at += unit;
  return at + unit;
}

}  // namespace

std::optional<std::string> ByteView::Text8() const {
  const unsigned char* const end = std::find(data_, data_ + First(CFavorite::kNameLimit).size(), 0);
  if (end - data_ == CFavorite::kNameLimit) return {};
  return std::string(data_, end);
}

std::optional<std::u16string> ByteView::Text16() const {
  char16_t text[CFavorite::kNameLimit];
  std::size_t length = 0;
  for (; 2 * length + 1 < size_ && Half(2 * length); ++length) {
    if (length + 1 == CFavorite::kNameLimit) return {};
    text[length] = Half(2 * length);
  }
  return std::u16string(text, length);
}

LONG OrderEntry::Position() const {
  const ULONG stored = bytes.Word(4);
  return static_cast<LONG>(stored == kNoPosition ? index : stored);
}

void OrderEntry::CopyTo(COrderRecord& record) const {
  record.recordSize = bytes.Word(0);
  record.position = static_cast<LONG>(bytes.Word(4));
  record.itemSize = bytes.Half(8);
  record.itemFlags = Flags();
  record.wordAt12 = bytes.Word(12);
  record.wordAt16 = bytes.Word(16);
  record.halfWordAt20 = bytes.Half(20);
  record.fromOrderValue = true;
}

std::optional<std::u16string> OrderEntry::Name() const {
  if (Flags() & kIsWide) return bytes.From(kNameAt).Text16();
  const std::optional<std::string> narrow = bytes.From(kNameAt).Text8();
  if (!narrow) return {};
  const auto* const bytes8 = reinterpret_cast<const unsigned char*>(narrow->data());
  return std::u16string(bytes8, bytes8 + narrow->size());
}

// The block follows the name at an even offset in the item, and the last two bytes of the item hold
// that offset. Both are tried, so that an item that is damaged in one place is still read.
std::optional<std::u16string> OrderEntry::LongName() const {
  const ByteView item = bytes.First(bytes.Word(0)).From(kItemAt).First(bytes.Half(kItemAt));
  const std::size_t name = kNameAt - kItemAt;
  const std::size_t behind = name + NameSize(item.From(name), Flags() & kIsWide);
  for (const std::size_t at : {behind + behind % 2, std::size_t{item.Half(item.size() - 2)}}) {
    const ByteView block = item.From(at).First(item.Half(at));
    const std::size_t longName = LongNameAt(block.Half(2));
    if (block.Word(4) != kBlockMark || longName == 0) continue;
    std::optional<std::u16string> text = block.From(longName).Text16();
    if (text && !text->empty()) return text;
  }
  return {};
}

void OrderValue::CopyTo(COrderHead& head) const {
  for (std::size_t i = 0; i < std::size(head.words); ++i) head.words[i] = bytes_.Word(4 * i);
  head.fromRegistry = true;
}

// A size that ends within the record's fixed part is invalid. There is no telling where the next
// record begins, and a size of one or two bytes would turn one record into thousands.
std::optional<OrderEntry> OrderValue::Next() {
  const ByteView record = bytes_.From(at_);
  if (record.size() <= OrderEntry::kNameAt || index_ == Count()) return {};
  const ULONG size = record.Word(0);
  at_ = size < OrderEntry::kNameAt || size > record.size() ? bytes_.size() : at_ + size;
  return OrderEntry{record, index_++};
}

COrderHead::~COrderHead() = default;

COrderRecord::~COrderRecord() = default;

}  // namespace vosmere
