// One loaded document in compact form, made to be walked once: nodes in document order in an arena,
// names interned, values as UTF-16.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vosmere/base/wide_view.h"

namespace vosmere::posix {

/// Beside the XmlNodeType numbers.
inline constexpr int kXmlAttribute = 2;

// What nodes without a name of their own are called.
inline constexpr char kXmlTextName[] = "#text";
inline constexpr char kXmlCDataName[] = "#cdata-section";
inline constexpr char kXmlCommentName[] = "#comment";

/// A name as it stands in the document, once for all nodes of one type that bear it.
struct XmlName {
  WideView text;
  int type;
  std::uint32_t lastUser = 0;  ///< for a parser's own ends
};

/// A zero-terminated value with its length in units in the four bytes before it.
struct XmlValue {
  const WChar* text = nullptr;

  WideView view() const {
    std::uint32_t length = 0;
    if (text)
      std::memcpy(&length, reinterpret_cast<const char*>(text) - sizeof length, sizeof length);
    return {text, length};
  }
};

struct XmlAttributeRecord {
  const XmlName* name;
  XmlValue value;
};

/// An element's attributes stand right behind its record.
struct XmlRecord {
  XmlRecord* firstChild;
  XmlRecord* next;
  const XmlName* name;
  union {
    std::uint32_t attributeCount;  // of an element
    XmlValue value;                // of every other node
  };

  const XmlAttributeRecord* attributes() const {
    return reinterpret_cast<const XmlAttributeRecord*>(this + 1);
  }
};

/// Memory that is given back all at once. Throws std::bad_alloc.
class XmlArena {
 public:
  XmlArena() = default;
  XmlArena(const XmlArena&) = delete;
  XmlArena& operator=(const XmlArena&) = delete;

  XmlRecord* NewElement(const XmlName* name, std::uint32_t attributeCount);
  XmlRecord* NewNode(const XmlName* name, XmlValue value);
  /// A copy of UTF-8 text that the parser has checked.
  XmlValue NewValue(const char* utf8, std::size_t length);

  /// Room for a value of up to `capacity` units, which EndValue makes a value of those that end
  /// before `end`; the rest goes back to the arena. Nothing else is made in between.
  WChar* BeginValue(std::size_t capacity);
  XmlValue EndValue(WChar* begin, WChar* end);

  XmlRecord* root = nullptr;

 private:
  void* Allocate(std::size_t size);

  struct FreeBlock {
    void operator()(char* block) const { std::free(block); }
  };
  using Block = std::unique_ptr<char, FreeBlock>;

  std::vector<Block> blocks_;
  char* at_ = nullptr;
  char* end_ = nullptr;
};

/// The document's names, each kept once for every type of node that bears it.
class XmlNames {
 public:
  explicit XmlNames(XmlArena& arena) : arena_(arena), slots_(64) {}

  /// `name` is UTF-8, with its prefix. Throws std::bad_alloc.
  XmlName* Intern(std::string_view name, int type);
  std::size_t size() const { return names_.size(); }

 private:
  /// What tells names apart fast: their ends, which are all of most names, and their length.
  struct Key {
    std::uint64_t begin;
    std::uint64_t end;
    std::size_t size;
  };
  struct Entry {
    Key key;
    std::uint64_t hash;
    std::string bytes;
    XmlName name;
    Entry* next = nullptr;  ///< which name came behind this one the last time

    bool Is(const Key& other, std::string_view whole, int type) const {
      return key.begin == other.begin && key.end == other.end && key.size == other.size &&
             name.type == type && (key.size <= 16 || bytes == whole);
    }
  };

  Entry& Find(const Key& key, std::string_view name, int type);
  Entry*& Slot(std::uint64_t hash, const Key& key, std::string_view name, int type);
  std::uint64_t Hash(const Key& key, std::string_view name) const;
  void Grow();

  XmlArena& arena_;
  std::vector<Entry*> slots_;
  std::deque<Entry> names_;
  Entry* last_ = nullptr;
};

/// Where an element begins: its line, and the characters up to it in that line, both from 1; a
/// column of 0 is not known.
struct XmlPlace {
  int line = 1;
  int column = 1;

  /// Goes on behind these bytes of UTF-8.
  void Pass(std::string_view text) {
    for (const char c : text) {
      if (c == '\n') {
        ++line;
        column = 1;
      } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
        ++column;
      }
    }
  }
};

/// What an XmlDocument owns.
struct XmlTree {
  XmlArena arena;
  XmlNames names{arena};
  bool keepsPlaces = false;
  std::unordered_map<const XmlRecord*, XmlPlace> places;  // of elements, where they are kept
};

/// Links the nodes of a tree as they come, in document order. Throws std::bad_alloc.
class XmlGrowth {
 public:
  explicit XmlGrowth(XmlTree& tree) : tree_(tree) {}

  /// How many elements are open.
  std::size_t depth() const { return open_.size(); }
  /// Below the innermost open element; the first node is the root.
  void Add(XmlRecord* node);
  /// What comes next stands in `element`, which was added last.
  void Open(XmlRecord* element) { open_.push_back({element, nullptr}); }
  void Close() { open_.pop_back(); }

 private:
  struct Parent {
    XmlRecord* element;
    XmlRecord* lastChild;
  };

  XmlTree& tree_;
  std::vector<Parent> open_;
};

}  // namespace vosmere::posix
