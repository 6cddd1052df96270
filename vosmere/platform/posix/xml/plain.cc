// A fast parser for plain XML documents.
#include "vosmere/platform/posix/xml/plain.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include "vosmere/base/ascii.h"
#include "vosmere/base/document_error.h"
#include "vosmere/platform/posix/xml/plain_value.h"
#include "vosmere/platform/posix/xml/tame_bytes.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere::posix {
namespace {

// Below the limits of the full parser, so that whatever reaches them is decided there.
constexpr std::size_t kMostNames = 5000;
constexpr std::size_t kLongestName = 256;
constexpr std::size_t kMostAttributes = 100;
constexpr std::size_t kMostNamespaces = 100;
constexpr std::size_t kLongestAddress = 1000;  // the URI of a namespace
// libxml2 limits the part before the root element's content, and the size of the whole document.
constexpr std::ptrdiff_t kLongestBeginning = std::ptrdiff_t{1024} * 1024;
constexpr std::size_t kLongestDocument = std::size_t{64} * 1024 * 1024;

constexpr std::string_view kXmlns = "xmlns";

constexpr bool IsNameStart(char c) {
  return ascii::IsLetter(c) || c == '_';
}

constexpr auto kNameParts = [] {
  std::array<bool, 256> parts = {};
  for (int c = 0; c < 128; ++c) {
    const char part = static_cast<char>(c);
    parts[c] = IsNameStart(part) || ascii::IsDigit(part) || part == '-' || part == '.' || c == ':';
  }
  return parts;
}();
bool IsNamePart(char c) {
  return kNameParts[static_cast<unsigned char>(c)];
}

/// Whether libxml2 has rules of its own for a namespace declaration. It also stores the URI like a
/// name, with the same limit on its length.
bool IsReserved(const XmlName& name, std::string_view address) {
  return address.empty() || address.size() > kLongestAddress || address.find('&') != address.npos ||
         address.find("w3.org/XML/1998/namespace") != address.npos ||
         address.find("w3.org/2000/xmlns") != address.npos ||
         (name.prefixSize > 0 && name.utf8.substr(name.prefixSize + 1, 3) == "xml");
}

/// The parser. Every operation that returns a bool returns false for a document that is not plain.
class Parser {
 public:
  Parser(XmlTree& tree, std::string_view document)
      : tree_(tree),
        begin_(document.data()),
        at_(begin_),
        end_(begin_ + document.size()),
        text_(Intern(kXmlTextName, kXmlText)) {}

  bool Parse(const char* encoding) {
    if (Left() > kLongestDocument) return false;
    if (!encoding) Skip("\xEF\xBB\xBF");  // with a known encoding this is not a byte-order mark
    passed_ = at_;
    if (Skip("<?xml") && !TakeDeclaration()) return false;
    while (at_ != end_)
      if (!(*at_ == '<' ? TakeMarkup() : TakeText())) return false;
    return tree_.arena.root && open_.empty();
  }

 private:
  // Reading at the current position.

  std::size_t Left() const { return static_cast<std::size_t>(end_ - at_); }
  bool Begins(std::string_view text) const {
    return Left() >= text.size() && std::string_view(at_, text.size()) == text;
  }
  bool Skip(std::string_view text) {
    if (!Begins(text)) return false;
    at_ += text.size();
    return true;
  }
  bool SkipBlanks() {
    const char* const begin = at_;
    while (at_ != end_ && ascii::IsBlank(*at_)) ++at_;
    return at_ != begin;
  }
  /// Takes the text before `end`, and skips `end`.
  bool TakeUpTo(std::string_view end, std::string_view* piece) {
    const std::string_view left(at_, Left());
    const std::size_t length = left.find(end);
    if (length == left.npos) return false;
    *piece = left.substr(0, length);
    at_ += length + end.size();
    return true;
  }
  bool TakeQuoted(std::string_view* piece) {
    return Skip("'") ? TakeUpTo("'", piece) : Skip("\"") && TakeUpTo("\"", piece);
  }
  bool SkipEquals() {
    SkipBlanks();
    if (!Skip("=")) return false;
    SkipBlanks();
    return true;
  }
  /// Null if there is no name.
  XmlName* TakeName(int type) {
    XmlName* name = nullptr;
    if (Left() >= XmlNames::kGuessed && (name = tree_.names.Guess(at_, type, IsNamePart)))
      at_ += name->utf8.size();
    else
      name = TakeNameByByte(type);
    return name;
  }
  XmlName* TakeNameByByte(int type);

  // The parts of a document.

  bool TakeDeclaration();
  bool TakeMarkup();
  bool TakeText();
  bool TakeComment();
  bool TakeCData();
  bool TakeInstruction();
  bool TakeStartTag();
  bool TakeAttribute();
  bool TakeAttributeValue(XmlValue* value, std::string_view* piece);
  bool TakeEndTag();

  /// Brings the place to the start tag whose `<` was skipped.
  void PassToTag() {
    const char* const tag = at_ - 1;
    place_.Pass(std::string_view(passed_, tag));
    passed_ = tag;
  }
  XmlName* Intern(std::string_view name, int type) { return tree_.names.Intern(name, type); }
  bool AddLeaf(const XmlName* name, std::string_view piece, PlainValue kind);

  XmlTree& tree_;
  const char* const begin_;
  const char* at_;
  const char* const end_;
  const XmlName* const text_;
  XmlGrowth growth_{tree_};
  std::vector<std::string_view> open_;  // the elements' names
  XmlPlace place_;
  const char* passed_ = nullptr;  // where that is

  // The start tag that is being read.
  std::vector<XmlValue> namespaces_, attributes_;
  std::string_view prefix_;         // the only prefix among its attributes
  std::uint32_t element_ = 0;       // its number; XmlName::lastUser finds a repeated attribute
  std::size_t namespaceCount_ = 0;  // in the whole document
};

XmlName* Parser::TakeNameByByte(int type) {
  std::size_t length = 0, colon = 0;
  const std::size_t most = std::min(Left(), kLongestName);
  for (; length < most && IsNamePart(at_[length]); ++length) {
    if (at_[length] != ':') continue;
    if (colon > 0 || length == 0) return nullptr;
    colon = length;
  }
  if (length == 0 || length == most) return nullptr;
  const std::string_view whole(at_, length);
  const std::string_view local = whole.substr(colon > 0 ? colon + 1 : 0);
  if (local.empty() || !IsNameStart(whole[0]) || !IsNameStart(local[0])) return nullptr;
  at_ += length;
  return Intern(whole, type);
}

bool Parser::TakeDeclaration() {
  std::string_view value;
  const auto take = [&](std::string_view name) {
    return Skip(name) && SkipEquals() && TakeQuoted(&value);
  };
  const auto isUtf8 = [&] { return value == "UTF-8" || value == "utf-8"; };
  if (!SkipBlanks() || !take("version") || value != "1.0") return false;
  bool blank = SkipBlanks();
  if (blank && Begins("e")) {
    if (!take("encoding") || !isUtf8()) return false;
    blank = SkipBlanks();
  }
  if (blank && Begins("s")) {
    if (!take("standalone") || (value != "yes" && value != "no")) return false;
    SkipBlanks();
  }
  return Skip("?>");
}

bool Parser::TakeMarkup() {
  if (Skip("</")) return TakeEndTag();
  if (tree_.names.size() > kMostNames) return false;
  if (Skip("<!--")) return TakeComment();
  if (Skip("<![CDATA[")) return TakeCData();
  if (Skip("<?")) return TakeInstruction();
  return Skip("<") && TakeStartTag();
}

bool Parser::TakeText() {
  if (open_.empty()) {
    SkipBlanks();
    return at_ == end_ || *at_ == '<';
  }
  if (Begins("\r\n")) ++at_;  // a line end is a single LF in the tree
  const char* const begin = at_;
  const char* end = PassTame(at_, end_, ']');
  while (end != end_ && (*end == '\n' || *end == '\t')) end = PassTame(end + 1, end_, ']');
  if (end != end_ && *end != '<') {
    const auto* const tag = static_cast<const char*>(std::memchr(end, '<', end_ - end));
    at_ = tag ? tag : end_;
    return AddLeaf(text_, std::string_view(begin, at_), PlainValue::kText);
  }
  at_ = end;
  growth_.Add(
      tree_.arena.NewNode(text_, {begin, static_cast<std::uint32_t>(end - begin), false, 0}));
  return true;
}

bool Parser::TakeComment() {
  std::string_view text;
  // XML does not allow "--" in a comment except at its end.
  return TakeUpTo("--", &text) && Skip(">") &&
         AddLeaf(Intern(kXmlCommentName, kXmlComment), text, PlainValue::kLiteral);
}

bool Parser::TakeCData() {
  std::string_view text;
  return !open_.empty() && TakeUpTo("]]>", &text) &&
         AddLeaf(Intern(kXmlCDataName, kXmlCData), text, PlainValue::kLiteral);
}

bool Parser::TakeInstruction() {
  std::string_view data;
  const XmlName* const target = TakeName(kXmlProcessingInstruction);
  if (!target || target->prefixSize > 0) return false;
  if (target->utf8.size() == 3) return false;  // may be "xml" in any case, which is reserved
  if (!Begins("?>") && !SkipBlanks()) return false;
  return TakeUpTo("?>", &data) && AddLeaf(target, data, PlainValue::kLiteral);
}

bool Parser::TakeStartTag() {
  if (open_.empty() && tree_.arena.root) return false;
  if (open_.size() >= kMaxXmlDepth) return false;
  if (tree_.keepsPlaces) PassToTag();
  const XmlName* const name = TakeName(kXmlElement);
  if (!name || name->Prefix() == kXmlns) return false;
  namespaces_.clear();
  attributes_.clear();
  prefix_ = {};
  ++element_;
  while (SkipBlanks() && at_ != end_ && IsNameStart(*at_))
    if (!TakeAttribute()) return false;
  const bool isEmpty = Skip("/>");
  if (!isEmpty && !Skip(">")) return false;
  if (!tree_.arena.root && at_ - begin_ > kLongestBeginning) return false;

  const std::size_t count = namespaces_.size() + attributes_.size();
  XmlRecord* const element = tree_.arena.NewElement(name, static_cast<std::uint32_t>(count));
  auto* const records = const_cast<XmlValue*>(element->attributes());
  std::copy(attributes_.begin(), attributes_.end(),
            std::copy(namespaces_.begin(), namespaces_.end(), records));
  growth_.Add(element);
  if (tree_.keepsPlaces) tree_.places.emplace(element, place_);
  if (!isEmpty) {
    growth_.Open(element);
    open_.push_back(name->utf8);
  }
  return true;
}

bool Parser::TakeAttribute() {
  XmlName* const name = TakeName(kXmlAttribute);
  if (!name || std::exchange(name->lastUser, element_) == element_ || !SkipEquals()) return false;
  XmlValue value;
  std::string_view piece;
  if (!TakeAttributeValue(&value, &piece)) return false;
  value.attribute = name->number;

  const std::string_view prefix = name->Prefix();
  if (prefix == kXmlns || name->utf8 == kXmlns) {
    namespaces_.push_back(value);
    return ++namespaceCount_ <= kMostNamespaces && !IsReserved(*name, piece);
  }
  attributes_.push_back(value);
  if (prefix.empty()) return attributes_.size() <= kMostAttributes;
  // With two prefixes, two attributes may have the same expanded name, if the prefixes belong to
  // the same namespace.
  if (prefix_.empty()) prefix_ = prefix;
  return prefix_ == prefix && attributes_.size() <= kMostAttributes;
}

bool Parser::TakeAttributeValue(XmlValue* value, std::string_view* piece) {
  if (at_ == end_ || (*at_ != '"' && *at_ != '\'')) return false;
  const char quote = *at_++;
  const char* const end = PassTame(at_, end_, quote);
  if (end == end_) return false;
  if (*end != quote)
    return TakeUpTo(std::string_view(&quote, 1), piece) &&
           ReadPlainValue(tree_.arena, *piece, PlainValue::kAttribute, value);
  *piece = std::string_view(at_, end);
  *value = {at_, static_cast<std::uint32_t>(piece->size()), false, 0};
  at_ = end + 1;
  return true;
}

bool Parser::TakeEndTag() {
  if (open_.empty() || !Skip(open_.back())) return false;
  SkipBlanks();
  open_.pop_back();
  growth_.Close();
  return Skip(">");
}

bool Parser::AddLeaf(const XmlName* name, std::string_view piece, PlainValue kind) {
  XmlValue value;
  if (!ReadPlainValue(tree_.arena, piece, kind, &value)) return false;
  if (!open_.empty()) growth_.Add(tree_.arena.NewNode(name, value));
  return true;
}

}  // namespace

bool BuildPlainXmlTree(XmlTree& tree, std::string_view document, const char* encoding) {
  return Parser(tree, document).Parse(encoding);
}

}  // namespace vosmere::posix
