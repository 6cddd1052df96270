// A fast parser for plain XML documents.
#include "vosmere/platform/posix/xml/plain.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "vosmere/base/ascii.h"
#include "vosmere/base/document_error.h"
#include "vosmere/platform/posix/xml/plain_value.h"
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
constexpr std::size_t kLongestBeginning = std::size_t{1024} * 1024;
constexpr std::size_t kLongestDocument = std::size_t{64} * 1024 * 1024;

constexpr std::string_view kXmlns = "xmlns";

constexpr bool IsNameStart(char c) {
  return ascii::IsLetter(c) || c == '_';
}
constexpr bool IsNamePart(char c) {
  return IsNameStart(c) || ascii::IsDigit(c) || c == '-' || c == '.' || c == ':';
}

/// A qualified name and its parts. The prefix is empty if it has none.
struct Name {
  std::string_view whole;
  std::string_view prefix;
  std::string_view local;
};

/// Whether libxml2 has rules of its own for a namespace declaration. It also stores the URI like a
/// name, with the same limit on its length.
bool IsReserved(const Name& name, std::string_view address) {
  return address.empty() || address.size() > kLongestAddress || address.find('&') != address.npos ||
         address.find("w3.org/XML/1998/namespace") != address.npos ||
         address.find("w3.org/2000/xmlns") != address.npos ||
         (!name.prefix.empty() && name.local.substr(0, 3) == "xml");
}

/// The parser. Every operation that returns a bool returns false for a document that is not plain.
class Parser {
 public:
  Parser(XmlTree& tree, std::string_view document)
      : tree_(tree), whole_(document), left_(document), text_(Intern(kXmlTextName, kXmlText)) {}

  bool Parse(const char* encoding) {
    if (whole_.size() > kLongestDocument) return false;
    if (!encoding) Skip("\xEF\xBB\xBF");  // with a known encoding this is not a byte-order mark
    passed_ = whole_.size() - left_.size();
    if (Skip("<?xml") && !TakeDeclaration()) return false;
    while (!left_.empty())
      if (!(left_[0] == '<' ? TakeMarkup() : TakeText())) return false;
    return tree_.arena.root && open_.empty();
  }

 private:
  // Reading at the current position.

  bool Skip(std::string_view text) {
    if (left_.substr(0, text.size()) != text) return false;
    left_.remove_prefix(text.size());
    return true;
  }
  bool SkipBlanks() {
    std::size_t i = 0;
    while (i < left_.size() && ascii::IsBlank(left_[i])) ++i;
    left_.remove_prefix(i);
    return i > 0;
  }
  /// Takes the text before `end`, and skips `end`.
  bool TakeUpTo(std::string_view end, std::string_view* piece) {
    const std::size_t length = left_.find(end);
    if (length == left_.npos) return false;
    *piece = left_.substr(0, length);
    left_.remove_prefix(length + end.size());
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
  bool TakeName(Name* name) {
    std::size_t length = 0, colon = 0;
    const std::size_t most = std::min(left_.size(), kLongestName);
    for (; length < most && IsNamePart(left_[length]); ++length) {
      if (left_[length] != ':') continue;
      if (colon > 0 || length == 0) return false;
      colon = length;
    }
    if (length == 0 || length == most) return false;
    name->whole = left_.substr(0, length);
    name->prefix = name->whole.substr(0, colon);
    name->local = colon > 0 ? name->whole.substr(colon + 1) : name->whole;
    left_.remove_prefix(length);
    return IsNameStart(name->whole[0]) && !name->local.empty() && IsNameStart(name->local[0]);
  }

  // The parts of a document.

  bool TakeDeclaration();
  bool TakeMarkup();
  bool TakeText();
  bool TakeComment();
  bool TakeCData();
  bool TakeInstruction();
  bool TakeStartTag();
  bool TakeAttribute();
  bool TakeEndTag();

  /// Brings the place to the start tag whose `<` was skipped.
  void PassToTag() {
    const std::size_t tag = whole_.size() - left_.size() - 1;
    place_.Pass(whole_.substr(passed_, tag - passed_));
    passed_ = tag;
  }
  XmlName* Intern(std::string_view name, int type) { return tree_.names.Intern(name, type); }
  bool AddLeaf(const XmlName* name, std::string_view piece, PlainValue kind);

  XmlTree& tree_;
  const std::string_view whole_;
  std::string_view left_;
  const XmlName* const text_;
  XmlGrowth growth_{tree_};
  std::vector<std::string_view> open_;  // the elements' names
  XmlPlace place_;
  std::size_t passed_ = 0;  // bytes before that

  // The start tag that is being read.
  std::vector<XmlAttributeRecord> namespaces_, attributes_;
  std::string_view prefix_;         // the only prefix among its attributes
  std::uint32_t element_ = 0;       // its number; XmlName::lastUser finds a repeated attribute
  std::size_t namespaceCount_ = 0;  // in the whole document
};

bool Parser::TakeDeclaration() {
  std::string_view value;
  const auto take = [&](std::string_view name) {
    return Skip(name) && SkipEquals() && TakeQuoted(&value);
  };
  const auto isUtf8 = [&] { return value == "UTF-8" || value == "utf-8"; };
  if (!SkipBlanks() || !take("version") || value != "1.0") return false;
  bool blank = SkipBlanks();
  if (blank && left_.substr(0, 1) == "e") {
    if (!take("encoding") || !isUtf8()) return false;
    blank = SkipBlanks();
  }
  if (blank && left_.substr(0, 1) == "s") {
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
  const std::string_view text = left_.substr(0, left_.find('<'));
  left_.remove_prefix(text.size());
  if (open_.empty()) return std::all_of(text.begin(), text.end(), ascii::IsBlank<char>);
  return AddLeaf(text_, text, PlainValue::kText);
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
  Name target;
  std::string_view data;
  if (!TakeName(&target) || !target.prefix.empty()) return false;
  if (target.whole.size() == 3) return false;  // may be "xml" in any case, which is reserved
  if (left_.substr(0, 2) != "?>" && !SkipBlanks()) return false;
  return TakeUpTo("?>", &data) &&
         AddLeaf(Intern(target.whole, kXmlProcessingInstruction), data, PlainValue::kLiteral);
}

bool Parser::TakeStartTag() {
  if (open_.empty() && tree_.arena.root) return false;
  if (open_.size() >= kMaxXmlDepth) return false;
  if (tree_.keepsPlaces) PassToTag();
  Name name;
  if (!TakeName(&name) || name.prefix == kXmlns) return false;
  namespaces_.clear();
  attributes_.clear();
  prefix_ = {};
  ++element_;
  while (SkipBlanks() && !left_.empty() && IsNameStart(left_[0]))
    if (!TakeAttribute()) return false;
  const bool isEmpty = Skip("/>");
  if (!isEmpty && !Skip(">")) return false;
  if (!tree_.arena.root && whole_.size() - left_.size() > kLongestBeginning) return false;

  const std::size_t count = namespaces_.size() + attributes_.size();
  XmlRecord* const element =
      tree_.arena.NewElement(Intern(name.whole, kXmlElement), static_cast<std::uint32_t>(count));
  auto* const records = const_cast<XmlAttributeRecord*>(element->attributes());
  std::copy(attributes_.begin(), attributes_.end(),
            std::copy(namespaces_.begin(), namespaces_.end(), records));
  growth_.Add(element);
  if (tree_.keepsPlaces) tree_.places.emplace(element, place_);
  if (!isEmpty) {
    growth_.Open(element);
    open_.push_back(name.whole);
  }
  return true;
}

bool Parser::TakeAttribute() {
  Name name;
  std::string_view piece;
  if (!TakeName(&name) || !SkipEquals() || !TakeQuoted(&piece)) return false;
  XmlName* const interned = Intern(name.whole, kXmlAttribute);
  if (std::exchange(interned->lastUser, element_) == element_) return false;
  XmlValue value;
  if (!ReadPlainValue(tree_.arena, piece, PlainValue::kAttribute, &value)) return false;

  if (name.whole == kXmlns || name.prefix == kXmlns) {
    namespaces_.push_back({interned, value});
    return ++namespaceCount_ <= kMostNamespaces && !IsReserved(name, piece);
  }
  attributes_.push_back({interned, value});
  if (name.prefix.empty()) return attributes_.size() <= kMostAttributes;
  // With two prefixes, two attributes may have the same expanded name, if the prefixes belong to
  // the same namespace.
  if (prefix_.empty()) prefix_ = name.prefix;
  return prefix_ == name.prefix && attributes_.size() <= kMostAttributes;
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
