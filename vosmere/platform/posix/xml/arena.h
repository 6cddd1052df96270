// A loaded XML document in compact form, built to be walked once: nodes in document order in an
// arena, interned names, values that are mostly parts of the document's bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vosmere/base/document_error.h"
#include "vosmere/base/wide_view.h"

namespace vosmere::posix {

/// The DOM number of attributes, which XmlNodeType does not have.
inline constexpr int kXmlAttribute = 2;

// The names of nodes that have no name of their own.
inline constexpr char kXmlTextName[] = "#text";
inline constexpr char kXmlCDataName[] = "#cdata-section";
inline constexpr char kXmlCommentName[] = "#comment";

class XmlNames;

/// A qualified name, stored once for all nodes of the same type with that name.
struct XmlName {
  WideView text;
  std::string_view utf8;
  const XmlNames* names;  ///< the document's
  std::uint32_t number;   ///< among them
  int type;
  std::uint32_t lastUser = 0;  ///< free for the parser that builds the tree

  /// The part before the colon; empty if there is none.
  std::string_view Prefix() const { return utf8.substr(0, prefixSize); }

  std::size_t prefixSize = 0;
};

/// A value. Most values of most documents are plain ASCII and stay where they are in the document's
/// bytes, because widening them when they are read costs less than memory for all of them.
struct XmlValue {
  const void* text = nullptr;
  std::uint32_t size : 31 = 0;  ///< in code units
  /// Whether it is null-terminated UTF-16 in the arena; otherwise it is ASCII.
  std::uint32_t isWide : 1 = false;
  std::uint32_t attribute = 0;  ///< the number of the attribute's name, if it has one

  /// Copies the code units.
  void CopyTo(WChar* to) const;
};

/// A node. An element's attributes follow its record directly.
struct XmlRecord {
  struct Content {
    XmlRecord* firstChild;
    std::uint32_t attributeCount;
  };

  XmlRecord* next;
  const XmlName* name;
  union {
    Content element;
    XmlValue value;  // of every other node
  };

  const XmlValue* attributes() const { return reinterpret_cast<const XmlValue*>(this + 1); }
};

struct FreeBytes {
  void operator()(char* bytes) const { std::free(bytes); }
};

/// Allocates the records and values of a document, which are freed all at once. All operations
/// throw std::bad_alloc.
class XmlArena {
 public:
  XmlArena() = default;
  XmlArena(const XmlArena&) = delete;
  XmlArena& operator=(const XmlArena&) = delete;

  XmlRecord* NewElement(const XmlName* name, std::uint32_t attributeCount);
  XmlRecord* NewNode(const XmlName* name, XmlValue value);
  /// Converts UTF-8 text that the parser has checked.
  XmlValue NewValue(const char* utf8, std::size_t length);

  /// BeginValue returns memory for a value of up to `capacity` code units. EndValue makes a value
  /// of the ones before `end`, and the rest of the memory is used again. Nothing else may be
  /// allocated in between.
  WChar* BeginValue(std::size_t capacity);
  XmlValue EndValue(WChar* begin, WChar* end);

  XmlRecord* root = nullptr;

 private:
  void* Allocate(std::size_t size);

  using Block = std::unique_ptr<char, FreeBytes>;

  void NewBlock(std::size_t size);

  std::vector<Block> blocks_;
  char* at_ = nullptr;
  char* end_ = nullptr;
};

inline void* XmlArena::Allocate(std::size_t size) {
  constexpr std::size_t kAlignment = alignof(XmlRecord);
  size = (size + kAlignment - 1) & ~(kAlignment - 1);
  if (static_cast<std::size_t>(end_ - at_) < size) NewBlock(size);
  return std::exchange(at_, at_ + size);
}

/// The document's names. Each is stored once for every type of node that uses it.
class XmlNames {
 public:
  explicit XmlNames(XmlArena& arena) : arena_(arena), slots_(64) {}

  /// Finds or adds a name. `name` is UTF-8, with its prefix. Throws std::bad_alloc.
  XmlName* Intern(std::string_view name, int type);
  /// The name that stands at `at`, where at least kGuessed bytes can be read, if it is one of those
  /// that followed the last name before, and if `isPart` is false for the byte after it; otherwise
  /// null. Documents repeat themselves, so this saves reading most names byte by byte.
  template <class IsPart>
  XmlName* Guess(const char* at, int type, IsPart isPart) {
    if (!last_) return nullptr;
    for (Entry* const entry : last_->next)
      if (entry && entry->name.type == type && entry->Begins(at) && !isPart(at[entry->key.size]))
        return Follow(*entry);
    return nullptr;
  }
  static constexpr std::size_t kGuessed = 17;

  std::size_t size() const { return byNumber_.size(); }
  const XmlName& operator[](std::uint32_t number) const { return *byNumber_[number]; }

 private:
  /// Distinguishes names quickly: their first and last eight bytes, which is all of most names, and
  /// their length.
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
    Entry* next[2] = {};     ///< the names that followed this one last, the last one first
    std::uint64_t mask = 0;  ///< all ones for the bytes of a name of up to eight

    /// Whether the name begins at `at`. False for a name of more than 16 bytes.
    bool Begins(const char* at) const {
      std::uint64_t begin, end;
      std::memcpy(&begin, at, sizeof begin);
      if (key.size <= sizeof begin) return ((begin ^ key.begin) & mask) == 0;
      if (key.size > 2 * sizeof begin) return false;
      std::memcpy(&end, at + key.size - sizeof end, sizeof end);
      return begin == key.begin && end == key.end;
    }

    bool Is(const Key& other, std::string_view whole, int type) const {
      return key.begin == other.begin && key.end == other.end && key.size == other.size &&
             name.type == type && (key.size <= 16 || bytes == whole);
    }
  };

  /// Makes an entry the last one.
  XmlName* Follow(Entry& entry) {
    if (last_ && last_->next[0] != &entry) last_->next[1] = std::exchange(last_->next[0], &entry);
    last_ = &entry;
    return &entry.name;
  }
  /// Looks a name up in the hash table, and adds it if it is missing.
  Entry& Find(const Key& key, std::string_view name, int type);
  /// The slot of a name in the hash table, or the free one where it belongs.
  Entry*& Slot(std::uint64_t hash, const Key& key, std::string_view name, int type);
  std::uint64_t Hash(const Key& key, std::string_view name) const;
  void Grow();

  XmlArena& arena_;
  std::vector<Entry*> slots_;
  std::deque<Entry> names_;
  std::vector<const XmlName*> byNumber_;
  Entry* last_ = nullptr;
};

/// Where an element begins: its line, and the characters up to it in that line, both from 1; a
/// column of 0 is not known.
struct XmlPlace {
  int line = 1;
  int column = 1;

  /// Steps over this UTF-8 text.
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

/// A loaded document: what XmlDocument owns.
struct XmlTree {
  /// What the values are parts of, unless the caller of the load owns it.
  std::unique_ptr<char, FreeBytes> bytes;
  XmlArena arena;
  XmlNames names{arena};
  bool keepsPlaces = false;
  std::unordered_map<const XmlRecord*, XmlPlace> places;  // of elements, where they are kept
};

/// Links nodes into a tree in document order. Throws std::bad_alloc.
class XmlGrowth {
 public:
  explicit XmlGrowth(XmlTree& tree) : tree_(tree) {}

  /// The number of open elements.
  std::size_t depth() const { return open_.size(); }
  /// Adds a node as the last child of the innermost open element. The first node becomes the root.
  void Add(XmlRecord* node) {
    if (open_.empty()) {
      tree_.arena.root = node;
      return;
    }
    Parent& parent = open_.back();
    (parent.lastChild ? parent.lastChild->next : parent.element->element.firstChild) = node;
    parent.lastChild = node;
  }
  /// Opens `element`, the node added last: further nodes become its children.
  void Open(XmlRecord* element) { open_.push_back({element, nullptr}); }
  /// Closes the innermost open element.
  void Close() { open_.pop_back(); }
  /// Stores the path of the innermost open element. Does not allocate.
  void StorePath(DocumentError* error) const;

 private:
  struct Parent {
    XmlRecord* element;
    XmlRecord* lastChild;
  };

  XmlTree& tree_;
  std::vector<Parent> open_;
};

}  // namespace vosmere::posix
