// One loaded document in compact form, made to be walked once: nodes in document order in an arena,
// names interned, values as UTF-16.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

#include "vosmere/base/wide_view.h"

namespace vosmere::posix {

/// A name as it stands in the document, once for all nodes of one type that bear it.
struct XmlName {
  WideView text;
  int type;
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

/// The document's names. The parser hands out each name part at one address only, so parts are
/// compared by address.
class XmlNames {
 public:
  explicit XmlNames(XmlArena& arena) : arena_(arena), slots_(64) {}

  /// `prefix` may be null. Throws std::bad_alloc.
  const XmlName* Intern(const unsigned char* prefix, const unsigned char* local, int type);

 private:
  struct Slot {
    const unsigned char* prefix = nullptr;
    const unsigned char* local = nullptr;
    int type = 0;
    const XmlName* name = nullptr;
  };
  Slot& Find(const unsigned char* prefix, const unsigned char* local, int type);
  void Grow();

  XmlArena& arena_;
  std::vector<Slot> slots_;
  std::vector<std::unique_ptr<XmlName>> names_;
};

/// What an XmlDocument owns.
struct XmlTree {
  XmlArena arena;
  XmlNames names{arena};
};

}  // namespace vosmere::posix
