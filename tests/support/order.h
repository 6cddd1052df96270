// The values in which the shell keeps the order of a menu, made from a description of their items.
//
//   Order({{.name = "b.url", .position = 1}, {.name = "sub", .position = 0, .flags = kFolder}})
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/wide.h"

namespace vosmere::test {

inline constexpr int kFolder = 0, kFile = 2, kWide = 4;

struct OrderItem {
  std::string name;  ///< as it is in the record, without its terminating zero
  int position = -5;
  int flags = kFile;
  std::u16string longName = {};  ///< in a block after the name; none if empty
  int version = 3;               ///< the version of that block
};

inline std::string LittleEndian(std::uint32_t number, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(number >> 8 * i);
  return text;
}

/// The block with the long name of an item, `at` bytes after the start of the item.
inline std::string LongNameBlock(const OrderItem& item, std::size_t at) {
  const std::size_t nameAt = item.version == 3   ? 20
                             : item.version == 7 ? 38
                             : item.version == 8 ? 42
                                                 : 46;
  const std::string name = Utf16(item.longName) + std::string(2, '\0');
  std::string block = LittleEndian(nameAt + name.size() + 2, 2) + LittleEndian(item.version, 2) +
                      LittleEndian(0xBEEF0004, 4) + "datetime";
  block.resize(nameAt);
  return block + name + LittleEndian(at, 2);
}

inline std::string Record(const OrderItem& item) {
  std::string shellItem = LittleEndian(item.flags, 2) + "sizedateat" + item.name;
  shellItem.append(item.flags & kWide ? 2 : 1, '\0');
  if (shellItem.size() % 2) shellItem += '\0';
  if (!item.longName.empty()) shellItem += LongNameBlock(item, shellItem.size() + 2);
  const std::string whole = LittleEndian(shellItem.size() + 2, 2) + shellItem;
  return LittleEndian(whole.size() + 8, 4) + LittleEndian(item.position, 4) + whole;
}

inline std::string OrderHeader(std::uint32_t count) {
  std::string header;
  for (const std::uint32_t word : {8u, 2u, 777u, 1u, count}) header += LittleEndian(word, 4);
  return header;
}

inline std::string Order(const std::vector<OrderItem>& items) {
  std::string value = OrderHeader(items.size());
  for (const OrderItem& item : items) value += Record(item);
  return value;
}

}  // namespace vosmere::test
