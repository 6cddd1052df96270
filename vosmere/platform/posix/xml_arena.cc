#include "vosmere/platform/posix/xml_arena.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>
#include <utility>

#include "vosmere/platform/code_page.h"

namespace vosmere::posix {
namespace {

constexpr std::size_t kFirstBlock = std::size_t{16} * 1024;
constexpr std::size_t kLargestBlock = std::size_t{2} * 1024 * 1024;  // a huge page
constexpr std::size_t kAlignment = alignof(XmlRecord);

const char* Chars(const unsigned char* text) {
  return reinterpret_cast<const char*>(text);
}

// Large blocks ask for huge pages: entering small ones one by one costs more than filling them.
char* NewBlock(std::size_t size) {
  const bool large = size == kLargestBlock;
  void* const block = large ? std::aligned_alloc(kLargestBlock, size) : std::malloc(size);
  if (!block) throw std::bad_alloc();
  if (large) ::madvise(block, size, MADV_HUGEPAGE);  // a wish; small pages serve as well
  return static_cast<char*>(block);
}

}  // namespace

void* XmlArena::Allocate(std::size_t size) {
  size = (size + kAlignment - 1) & ~(kAlignment - 1);
  if (static_cast<std::size_t>(end_ - at_) < size) {
    const std::size_t block = std::max(
        size, std::min(kFirstBlock << std::min<std::size_t>(blocks_.size(), 16), kLargestBlock));
    at_ = (blocks_.emplace_back() = Block(NewBlock(block))).get();
    end_ = at_ + block;
  }
  return std::exchange(at_, at_ + size);
}

XmlRecord* XmlArena::NewElement(const XmlName* name, std::uint32_t attributeCount) {
  void* const memory =
      Allocate(sizeof(XmlRecord) + std::size_t{attributeCount} * sizeof(XmlAttributeRecord));
  auto* const record = new (memory) XmlRecord{nullptr, nullptr, name, {0}};
  record->attributeCount = attributeCount;
  return record;
}

XmlRecord* XmlArena::NewNode(const XmlName* name, XmlValue value) {
  auto* const record = new (Allocate(sizeof(XmlRecord))) XmlRecord{nullptr, nullptr, name, {0}};
  record->value = value;
  return record;
}

XmlValue XmlArena::NewValue(const char* utf8, std::size_t length) {
  if (length > std::numeric_limits<int>::max() / 2) throw std::bad_alloc();
  // UTF-16 never has more units than UTF-8 has bytes; what is not used goes back to the arena.
  const std::size_t header = sizeof(std::uint32_t);
  auto* const memory = static_cast<char*>(Allocate(header + (length + 1) * sizeof(WChar)));
  auto* const text = reinterpret_cast<WChar*>(memory + header);
  const std::uint32_t units = length == 0
                                  ? 0
                                  : BytesToWide(kCodePageUtf8, utf8, static_cast<int>(length), text,
                                                static_cast<int>(length));
  text[units] = 0;
  std::memcpy(memory, &units, header);
  const std::size_t used = header + (units + std::size_t{1}) * sizeof(WChar);
  at_ = memory + ((used + kAlignment - 1) & ~(kAlignment - 1));
  return {text};
}

const XmlName* XmlNames::Intern(const unsigned char* prefix, const unsigned char* local, int type) {
  Slot& slot = Find(prefix, local, type);
  if (slot.name) return slot.name;
  std::string whole = prefix ? Chars(prefix) + std::string(":") : std::string();
  whole += Chars(local);
  names_.push_back(
      std::make_unique<XmlName>(XmlName{arena_.NewValue(whole.data(), whole.size()).view(), type}));
  slot = {prefix, local, type, names_.back().get()};
  if (names_.size() * 2 > slots_.size()) Grow();
  return names_.back().get();
}

XmlNames::Slot& XmlNames::Find(const unsigned char* prefix, const unsigned char* local, int type) {
  const std::size_t mask = slots_.size() - 1;
  const auto key = reinterpret_cast<std::uintptr_t>(local) * 31 +
                   reinterpret_cast<std::uintptr_t>(prefix) + static_cast<unsigned>(type);
  for (std::size_t i = (key * 0x9E3779B97F4A7C15u) >> 32;; ++i) {
    Slot& slot = slots_[i & mask];
    if (!slot.name || (slot.local == local && slot.prefix == prefix && slot.type == type))
      return slot;
  }
}

void XmlNames::Grow() {
  std::vector<Slot> old(slots_.size() * 2);
  old.swap(slots_);
  for (const Slot& slot : old)
    if (slot.name) Find(slot.prefix, slot.local, slot.type) = slot;
}

}  // namespace vosmere::posix
