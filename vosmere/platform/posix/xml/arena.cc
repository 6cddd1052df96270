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
#include "vosmere/platform/posix/xml/tame_bytes.h"

namespace vosmere::posix {
namespace {

constexpr std::size_t kFirstBlock = std::size_t{16} * 1024;
constexpr std::size_t kHugePage = std::size_t{2} * 1024 * 1024;
constexpr std::size_t kLargestBlock = 2 * kHugePage;

// Large blocks ask for huge pages, because the page faults of small ones cost more than filling
// them.
char* AllocateBlock(std::size_t size) {
  const bool large = size >= kHugePage;
  void* block = large ? nullptr : std::malloc(size);
  if (large && ::posix_memalign(&block, kHugePage, size) != 0) block = nullptr;
  if (!block) throw std::bad_alloc();
  if (large) ::madvise(block, size, MADV_HUGEPAGE);  // a hint; small pages work too
  return static_cast<char*>(block);
}

/// The first eight bytes of a text as a number; a shorter text is followed by zeros.
std::uint64_t Load(std::string_view text) {
  std::uint64_t value = 0;
  std::memcpy(&value, text.data(), std::min(text.size(), sizeof value));
  return value;
}

}  // namespace

void XmlValue::CopyTo(WChar* to) const {
  if (isWide)
    std::copy_n(static_cast<const WChar*>(text), size, to);
  else
    Widen(static_cast<const char*>(text), size, to);
}

// Blocks double in size up to a limit: a small document takes little memory, a large one takes few
// blocks, the last of which is mostly used.
void XmlArena::NewBlock(std::size_t size) {
  const std::size_t block = std::max(
      size, std::min(kFirstBlock << std::min<std::size_t>(blocks_.size(), 16), kLargestBlock));
  at_ = (blocks_.emplace_back() = Block(AllocateBlock(block))).get();
  end_ = at_ + block;
}

XmlRecord* XmlArena::NewElement(const XmlName* name, std::uint32_t attributeCount) {
  void* const memory = Allocate(sizeof(XmlRecord) + std::size_t{attributeCount} * sizeof(XmlValue));
  return new (memory) XmlRecord{nullptr, name, {.element = {nullptr, attributeCount}}};
}

XmlRecord* XmlArena::NewNode(const XmlName* name, XmlValue value) {
  void* const memory = Allocate(sizeof(XmlRecord));
  return new (memory) XmlRecord{nullptr, name, {.value = value}};
}

XmlValue XmlArena::NewValue(const char* utf8, std::size_t length) {
  WChar* const begin = BeginValue(length);  // UTF-16 never has more units than UTF-8 has bytes
  return EndValue(begin, begin + utf8::Decode(utf8, length, begin, length));
}

WChar* XmlArena::BeginValue(std::size_t capacity) {
  if (capacity > std::numeric_limits<int>::max() / 2) throw std::bad_alloc();
  return static_cast<WChar*>(Allocate((capacity + 1) * sizeof(WChar)));
}

XmlValue XmlArena::EndValue(WChar* begin, WChar* end) {
  *end = 0;
  at_ = reinterpret_cast<char*>(begin);  // memory that the value does not need is used again
  const auto units = static_cast<std::uint32_t>(end - begin);
  Allocate((units + std::size_t{1}) * sizeof(WChar));
  return {begin, units, true, 0};
}

// Documents repeat themselves. Usually a name follows the same name as last time, which saves the
// lookup in the table.
XmlName* XmlNames::Intern(std::string_view name, int type) {
  const std::size_t size = name.size();
  const Key key = {Load(name), size > 8 ? Load(name.substr(size - 8)) : 0, size};
  Entry* const expected = last_ ? last_->next[0] : nullptr;
  return Follow(expected && expected->Is(key, name, type) ? *expected : Find(key, name, type));
}

XmlNames::Entry& XmlNames::Find(const Key& key, std::string_view name, int type) {
  const std::uint64_t hash = Hash(key, name);
  Entry*& slot = Slot(hash, key, name, type);
  if (slot) return *slot;
  const XmlValue text = arena_.NewValue(name.data(), name.size());
  Entry& entry = names_.emplace_back(Entry{key, hash, std::string(name), {}});
  const std::size_t colon = name.find(':');
  entry.name = {{static_cast<const WChar*>(text.text), text.size},
                entry.bytes,
                this,
                static_cast<std::uint32_t>(size()),
                type,
                0,
                colon == name.npos ? 0 : colon};
  byNumber_.push_back(&entry.name);
  std::memset(&entry.mask, 0xFF, std::min(name.size(), sizeof entry.mask));
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

void XmlGrowth::StorePath(DocumentError* error) const {
  for (std::size_t i = open_.size(); i-- > 0;) {
    const XmlRecord* const element = open_[i].element;
    std::size_t position = 1;
    for (const XmlRecord* sibling = i > 0 ? open_[i - 1].element->element.firstChild : element;
         sibling != element; sibling = sibling->next)
      if (sibling->name == element->name) ++position;
    if (!PrecedeElement(error, element->name->text, position)) return;
  }
}

}  // namespace vosmere::posix
