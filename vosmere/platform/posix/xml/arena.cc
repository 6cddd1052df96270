// The arena, the table of names, and the linking of nodes.
#include "vosmere/platform/posix/xml/arena.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "vosmere/platform/internal/element_path.h"
#include "vosmere/platform/posix/utf8.h"

namespace vosmere::posix {
namespace {

constexpr std::size_t kFirstBlock = std::size_t{16} * 1024;
constexpr std::size_t kHugePage = std::size_t{2} * 1024 * 1024;
constexpr std::size_t kLargestBlock = 4 * kHugePage;
constexpr std::size_t kAlignment = alignof(XmlRecord);

constexpr std::size_t kLengthSize = sizeof(std::uint32_t);

constexpr std::size_t Aligned(std::size_t size) {
  return (size + kAlignment - 1) & ~(kAlignment - 1);
}

// Large blocks ask for huge pages, because the page faults of small ones cost more than filling
// them. The alignment leaves a gap of up to one huge page before each block, so the largest blocks
// are several pages long.
char* NewBlock(std::size_t size) {
  const bool large = size >= kHugePage;
  void* block = large ? nullptr : std::malloc(size);
  if (large && ::posix_memalign(&block, kHugePage, size) != 0) block = nullptr;
  if (!block) throw std::bad_alloc();
  if (large) ::madvise(block, size, MADV_HUGEPAGE);  // a hint; small pages work too
  return static_cast<char*>(block);
}

/// The first eight bytes of a text as a number; for a shorter text, a number that depends on all of
/// it.
std::uint64_t Load(std::string_view text) {
  const auto load = [](const char* from, auto value) {
    std::memcpy(&value, from, sizeof value);
    return std::uint64_t{value};
  };
  const std::size_t size = text.size();
  const char* const data = text.data();
  if (size >= 8) return load(data, std::uint64_t{});
  if (size >= 4) return load(data, std::uint32_t{}) | load(data + size - 4, std::uint32_t{}) << 32;
  if (size == 0) return 0;
  using Byte = unsigned char;
  return load(data, Byte{}) | load(data + size / 2, Byte{}) << 8 |
         load(data + size - 1, Byte{}) << 16;
}

}  // namespace

void* XmlArena::Allocate(std::size_t size) {
  size = Aligned(size);
  if (static_cast<std::size_t>(end_ - at_) < size) {
    // Blocks double in size up to a limit: a small document takes little memory, a large one takes
    // few blocks.
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
  return new (memory) XmlRecord{nullptr, nullptr, name, {.attributeCount = attributeCount}};
}

XmlRecord* XmlArena::NewNode(const XmlName* name, XmlValue value) {
  void* const memory = Allocate(sizeof(XmlRecord));
  return new (memory) XmlRecord{nullptr, nullptr, name, {.value = value}};
}

XmlValue XmlArena::NewValue(const char* utf8, std::size_t length) {
  WChar* const begin = BeginValue(length);  // UTF-16 never has more units than UTF-8 has bytes
  return EndValue(begin, begin + utf8::Decode(utf8, length, begin, length));
}

WChar* XmlArena::BeginValue(std::size_t capacity) {
  if (capacity > std::numeric_limits<int>::max() / 2) throw std::bad_alloc();
  void* const memory = Allocate(kLengthSize + (capacity + 1) * sizeof(WChar));
  return reinterpret_cast<WChar*>(static_cast<char*>(memory) + kLengthSize);
}

XmlValue XmlArena::EndValue(WChar* begin, WChar* end) {
  *end = 0;
  const auto units = static_cast<std::uint32_t>(end - begin);
  char* const memory = reinterpret_cast<char*>(begin) - kLengthSize;
  std::memcpy(memory, &units, kLengthSize);
  // Memory that the value does not need is used again.
  at_ = memory + Aligned(kLengthSize + (units + std::size_t{1}) * sizeof(WChar));
  return {begin};
}

// Documents repeat themselves. Usually a name follows the same name as last time, which saves the
// lookup in the table.
XmlName* XmlNames::Intern(std::string_view name, int type) {
  const std::size_t size = name.size();
  const Key key = {Load(name), size > 8 ? Load(name.substr(size - 8)) : 0, size};
  Entry* const expected = last_ ? last_->next : nullptr;
  if (expected && expected->Is(key, name, type)) {
    last_ = expected;
  } else {
    Entry& found = Find(key, name, type);
    if (last_) last_->next = &found;
    last_ = &found;
  }
  return &last_->name;
}

XmlNames::Entry& XmlNames::Find(const Key& key, std::string_view name, int type) {
  const std::uint64_t hash = Hash(key, name);
  Entry*& slot = Slot(hash, key, name, type);
  if (slot) return *slot;
  const WideView text = arena_.NewValue(name.data(), name.size()).view();
  Entry& entry = names_.emplace_back(Entry{key, hash, std::string(name), {text, type}});
  slot = &entry;
  if (names_.size() * 2 > slots_.size()) Grow();
  return entry;
}

XmlNames::Entry*& XmlNames::Slot(std::uint64_t hash, const Key& key, std::string_view name,
                                 int type) {
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = hash + static_cast<unsigned>(type);; ++i) {
    Entry*& entry = slots_[i & mask];
    if (!entry || entry->Is(key, name, type)) return entry;
  }
}

// Depends on an address, which differs from process to process. Otherwise a document could be made
// of names that collide.
std::uint64_t XmlNames::Hash(const Key& key, std::string_view name) const {
  std::uint64_t hash = reinterpret_cast<std::uintptr_t>(this) ^ key.size;
  const auto mix = [&](std::uint64_t part) {
    hash ^= part;
    for (int round = 0; round < 2; ++round) {  // after one, low bits lack the last characters
      hash *= 0x9E3779B97F4A7C15u;
      hash ^= hash >> 32;
    }
  };
  mix(key.begin);
  mix(key.end);
  for (std::size_t at = 8; at + 8 < name.size(); at += 8) mix(Load(name.substr(at)));
  return hash;
}

void XmlNames::Grow() {
  slots_.assign(slots_.size() * 2, nullptr);
  for (Entry& entry : names_) Slot(entry.hash, entry.key, entry.bytes, entry.name.type) = &entry;
}

void XmlGrowth::Add(XmlRecord* node) {
  if (open_.empty()) {
    tree_.arena.root = node;
    return;
  }
  Parent& parent = open_.back();
  (parent.lastChild ? parent.lastChild->next : parent.element->firstChild) = node;
  parent.lastChild = node;
}

void XmlGrowth::StorePath(DocumentError* error) const {
  for (std::size_t i = open_.size(); i-- > 0;) {
    const XmlRecord* const element = open_[i].element;
    std::size_t position = 1;
    for (const XmlRecord* sibling = i > 0 ? open_[i - 1].element->firstChild : element;
         sibling != element; sibling = sibling->next)
      if (sibling->name == element->name) ++position;
    if (!PrecedeElement(error, element->name->text, position)) return;
  }
}

}  // namespace vosmere::posix
