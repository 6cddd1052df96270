// XmlDocument, XmlNode and XmlAttributes over the tree in the arena.
#include "vosmere/platform/internal/xml_document.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <vector>

#include "vosmere/platform/posix/xml/arena.h"
#include "vosmere/platform/posix/xml/builder.h"
#include "vosmere/platform/posix/xml/plain.h"
#include "vosmere/platform/posix/xml/source.h"

namespace vosmere {

using posix::XmlRecord;
using posix::XmlTree;
using posix::XmlValue;

struct XmlNodeHandle {
  static const XmlRecord* Record(const XmlNode& node) {
    return static_cast<const XmlRecord*>(node.handle_);
  }
  static XmlNode Make(XmlRecord* record) {
    XmlNode node;
    node.handle_ = record;
    if (record) node.type_ = record->name->type;
    return node;
  }
};

namespace {

const XmlRecord* Record(void* handle) {
  return static_cast<const XmlRecord*>(handle);
}

/// Has the processor fetch what the walk comes to soon: records lie in the order of the walk.
void FetchAhead(const XmlRecord* record) {
  constexpr std::uintptr_t kAhead = 1024;
  __builtin_prefetch(
      reinterpret_cast<const void*>(reinterpret_cast<std::uintptr_t>(record) + kAhead));
}

bool IsCharacters(const XmlRecord* node) {
  return node->name->type == kXmlText || node->name->type == kXmlCData;
}

/// Collects all text below `node` in document order and returns its length. It keeps a list instead
/// of recursing, so that deep nesting cannot overflow the stack.
std::size_t GatherText(const XmlRecord* node, std::vector<XmlValue>& pieces) {
  std::size_t length = 0;
  std::vector<const XmlRecord*> following;  // the next siblings of the open elements
  for (node = node->element.firstChild; node || !following.empty();) {
    if (!node) {
      node = following.back();
      following.pop_back();
    } else if (node->name->type == kXmlElement) {
      following.push_back(node->next);
      node = node->element.firstChild;
    } else {
      if (IsCharacters(node)) {
        pieces.push_back(node->value);
        length += pieces.back().size;
      }
      node = node->next;
    }
  }
  return length;
}

/// Loads a document, by the fast path if possible. `whole` is the same document in memory, if it is
/// available there.
std::unique_ptr<XmlTree> LoadTree(std::optional<std::string_view> whole, posix::XmlSource& source,
                                  const char* encoding, bool keepsPlaces) {
  auto tree = std::make_unique<XmlTree>();
  tree->keepsPlaces = keepsPlaces;
  if (whole && BuildPlainXmlTree(*tree, *whole, encoding)) return tree;
  // The fast path may have left part of a tree.
  tree = std::make_unique<XmlTree>();
  tree->keepsPlaces = keepsPlaces;
  BuildXmlTree(*tree, source, encoding);
  return tree;
}

std::unique_ptr<XmlTree> LoadTree(posix::XmlSource&& source, const char* encoding,
                                  bool keepsPlaces) {
  posix::ReadAhead ahead(source);
  std::unique_ptr<XmlTree> tree = LoadTree(ahead.Whole(), ahead, encoding, keepsPlaces);
  tree->bytes = ahead.Detach();
  return tree;
}

XmlText Joined(const std::vector<XmlValue>& pieces, std::size_t length) {
  XmlText joined;
  WChar* at = joined.Make(length);
  for (const XmlValue& piece : pieces) {
    piece.CopyTo(at);
    at += piece.size;
  }
  return joined;
}

void Assign(XmlText& text, const XmlValue& value) {
  if (value.isWide)
    text.Borrow(WideView(static_cast<const WChar*>(value.text), value.size));
  else
    value.CopyTo(text.Make(value.size));
}

XmlText TextOf(const XmlValue& value) {
  XmlText text;
  Assign(text, value);
  return text;
}

}  // namespace

XmlDocument::~XmlDocument() {
  delete static_cast<XmlTree*>(document_);
}

void XmlDocument::LoadFile(const WChar* path) {
  document_ = LoadTree(posix::FileSource(path), nullptr, keepsPlaces_).release();
}

void XmlDocument::LoadText(const WChar* text) {
  WideView view(text);
  if (!view.empty() && view[0] == 0xFEFF) view = view.From(1);
  document_ = LoadTree(posix::TextSource(view), "UTF-8", keepsPlaces_).release();
}

void XmlDocument::LoadBytes(const char* bytes, int length) {
  const std::string_view whole(bytes, length > 0 ? length : 0);
  posix::MemorySource source(whole);
  document_ = LoadTree(whole, source, nullptr, keepsPlaces_).release();
}

XmlNode XmlDocument::Root() const {
  return XmlNodeHandle::Make(document_ ? static_cast<XmlTree*>(document_)->arena.root : nullptr);
}

void XmlDocument::PlaceOf(const XmlNode& element, LONG* line, LONG* column) const {
  const auto& places = static_cast<const XmlTree*>(document_)->places;
  const auto found = places.find(XmlNodeHandle::Record(element));
  const posix::XmlPlace place = found == places.end() ? posix::XmlPlace{0, 0} : found->second;
  *line = place.line;
  *column = place.column;
}

// The document owns its nodes. A handle is a plain pointer, so there are no references to count.
void XmlNode::Retain() const noexcept {}

void XmlNode::Release() const noexcept {}

XmlText XmlNode::Name() const {
  return XmlText(Record(handle_)->name->text);
}

XmlText XmlNode::Text() const {
  const XmlRecord* const node = Record(handle_);
  if (node->name->type != kXmlElement) return TextOf(node->value);
  const XmlRecord* const first = node->element.firstChild;
  // The usual case, an element with a single text.
  if (first && !first->next && IsCharacters(first)) return TextOf(first->value);
  std::vector<XmlValue> pieces;
  const std::size_t length = GatherText(node, pieces);
  if (pieces.empty()) return XmlText();
  return pieces.size() == 1 ? TextOf(pieces[0]) : Joined(pieces, length);
}

XmlNode XmlNode::FirstChild() const {
  const XmlRecord* const node = Record(handle_);
  return XmlNodeHandle::Make(type_ == kXmlElement ? node->element.firstChild : nullptr);
}

XmlNode XmlNode::NextSibling() const {
  return XmlNodeHandle::Make(Record(handle_)->next);
}

void XmlNode::Advance() {
  XmlRecord* const next = Record(handle_)->next;
  handle_ = next;
  FetchAhead(next);
  type_ = next ? next->name->type : 0;
}

XmlAttributes::XmlAttributes(const XmlNode& element) : attributes_(element.handle_) {
  if (element.Type() == kXmlElement)
    count_ = static_cast<int>(Record(attributes_)->element.attributeCount);
}

XmlAttributes::~XmlAttributes() = default;

bool XmlAttributes::Next() {
  if (index_ == count_) return false;
  const XmlRecord* const element = Record(attributes_);
  name_.Borrow((*element->name->names)[element->attributes()[index_++].attribute].text);
  hasTextValue_ = true;
  return true;
}

const XmlText& XmlAttributes::Value() const {
  Assign(value_, Record(attributes_)->attributes()[index_ - 1]);
  return value_;
}

}  // namespace vosmere
