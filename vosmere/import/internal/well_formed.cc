// Makes a well-formed document of one that is damaged, in two passes: the first only learns which
// prefixes there are and whether the body has outlines, the second writes.
#include "vosmere/import/internal/well_formed.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <span>
#include <unordered_map>
#include <vector>

#include "vosmere/import/internal/addresses.h"
#include "vosmere/import/internal/names.h"
#include "vosmere/import/internal/outline.h"
#include "vosmere/import/internal/own_entities.h"
#include "vosmere/import/internal/references.h"
#include "vosmere/import/internal/tokens.h"
#include "vosmere/import/internal/utf8_text.h"
#include "vosmere/text/date_reader.h"

namespace vosmere::importing {
namespace {

constexpr std::size_t kMostAttributes = 100;
constexpr std::size_t kMostTags = 256;      // of an item
constexpr std::size_t kMostPrefixes = 100;  // parsers bound the namespaces in scope

/// Elements that do not stand inside another of the same name.
constexpr std::string_view kNeverNested[] = {"item", "channel", "head", "body"};
/// Elements that contain only text, and those that therefore end them if they are not closed.
constexpr std::string_view kLeaves[] = {"title", "link", "pubDate", "guid", "author", "category"};
constexpr std::string_view kAfterLeaves[] = {"title",  "link",     "pubDate",     "guid",
                                             "author", "category", "description", "item"};

template <std::size_t N>
bool IsIn(const std::string_view (&names)[N], std::string_view name) {
  return std::find(names, names + N, name) != names + N;
}

/// What the first pass learns about a document.
struct Facts {
  std::set<std::string, std::less<>> prefixes;  // all but "xml"
  std::set<std::string, std::less<>> declared;
  bool hasBodyOutlines = false;
};

class Pass {
 public:
  Pass(std::string_view text, const Facts* known, RepairList* repairs)
      : text_(text), known_(known), repairs_(repairs), tokens_(text, Markup::kXml, repairs) {}

  void Run();
  std::string TakeDocument() { return std::move(out_); }
  const Facts& facts() const { return facts_; }

 private:
  struct Open {
    std::string_view name;
    std::size_t contentAt;
  };

  void Take(Token& token);
  void TakeText(const Token& token);
  void TakeOther(const Token& token);
  void TakeStart(Token& token);
  void TakeEnd(const Token& token);
  void Finish();

  bool IsLeftOut(Token& tag);
  void CloseBefore(const Token& tag);
  void Close(std::string_view name, const Token& by);
  void CloseInnermost(std::size_t contentEnd);
  void FixAttributes(Token& tag);
  bool IsDeclaration(const Attribute& attribute);
  bool IsNewAttribute(Attribute& attribute, std::span<const Attribute> before);
  std::string_view Declare(std::string_view name, std::size_t at);
  std::string_view Bound(std::string_view name) const;
  void CheckText(const Open& element, std::size_t end);
  void CheckTag(std::string_view tag);

  void PutTag(const Token& tag);
  void PutEscaped(std::string_view raw);
  std::size_t PutReference(std::string_view rest);

  int CountOf(std::string_view name) const {
    const auto found = counts_.find(name);
    return found == counts_.end() ? 0 : found->second;
  }
  std::size_t Where(std::string_view part) const { return part.data() - text_.data(); }
  void Repair(RepairKind kind, std::size_t at, std::string_view found, std::string_view made) {
    if (repairs_) repairs_->Add(kind, at, found, made);
  }

  std::string_view text_;
  const Facts* known_;  // null in the first pass
  RepairList* repairs_;
  Tokens tokens_;
  Names names_;
  Facts facts_;
  std::string out_;
  std::vector<Open> open_;
  std::unordered_map<std::string_view, int> counts_;  // of open elements, by name
  std::size_t leftOutLevel_ = 0;                      // of elements inside one that is left out
  std::set<std::string_view> tags_;                   // of the item
  bool hasRoot_ = false;
  bool isOver_ = false;
};

void Pass::Run() {
  Token token;
  while (!isOver_ && tokens_.Next(token)) Take(token);
  Finish();
}

void Pass::Take(Token& token) {
  if (leftOutLevel_ > 0) {
    const bool begins = token.kind == TokenKind::kStart && !token.isEmpty;
    leftOutLevel_ += begins;
    leftOutLevel_ -= token.kind == TokenKind::kEnd;
    return;
  }
  const bool isText = token.kind == TokenKind::kText || token.kind == TokenKind::kCData;
  if (isText && Trimmed(token.text).empty() && open_.empty()) return;
  if (open_.empty() && token.kind != TokenKind::kOther &&
      (hasRoot_ || token.kind != TokenKind::kStart)) {
    Repair(RepairKind::kOutside, token.at, token.text, {});
    isOver_ = hasRoot_;
    return;
  }
  if (isText) TakeText(token);
  if (token.kind == TokenKind::kStart) TakeStart(token);
  if (token.kind == TokenKind::kEnd) TakeEnd(token);
  if (token.kind == TokenKind::kOther) TakeOther(token);
  if (token.kind == TokenKind::kCut) Repair(RepairKind::kCutOff, token.at, token.text, {});
}

void Pass::TakeText(const Token& token) {
  if (token.kind == TokenKind::kText) return PutEscaped(token.text);
  for (const char c : token.text) {  // in a CDATA section nothing is markup
    constexpr std::string_view kSpecial = "&<>";
    constexpr const char* kEscaped[] = {"&amp;", "&lt;", "&gt;"};
    const std::size_t which = kSpecial.find(c);
    which == kSpecial.npos ? out_.push_back(c) : static_cast<void>(out_ += kEscaped[which]);
  }
}

/// Comments and the like are left out anyway; an XML declaration inside the document is a fault.
void Pass::TakeOther(const Token& token) {
  constexpr std::string_view kDeclaration = "<?xml ";
  const bool isIt = token.text.substr(0, kDeclaration.size()) == kDeclaration;
  if (isIt && token.at > 0) Repair(RepairKind::kMarkup, token.at, token.text, {});
}

// Elements.

void Pass::TakeStart(Token& token) {
  const std::string_view name = names_.Element(token.name);
  if (IsFaulty(token.name, name)) Repair(RepairKind::kName, token.at + 1, token.name, name);
  token.name = Declare(name, token.at + 1);
  CloseBefore(token);
  if (token.name == "outline") NameAttributes(token, repairs_);
  FixAttributes(token);
  if (token.name == "outline" && IsLeftOut(token)) {
    leftOutLevel_ = token.isEmpty ? 0 : 1;
    return;
  }
  PutTag(token);
  hasRoot_ = true;
  if (token.isEmpty) return;
  open_.push_back({token.name, token.end});
  ++counts_[token.name];
}

bool Pass::IsLeftOut(Token& outline) {
  if (CountOf("body") > 0) facts_.hasBodyOutlines = true;
  const bool isOutside = CountOf("body") == 0 && CountOf("outline") == 0;
  const bool hasOthers = known_ && known_->hasBodyOutlines;
  if (isOutside)
    Repair(RepairKind::kNotInBody, outline.at, outline.text,
           hasOthers ? std::string_view() : outline.text);
  return (isOutside && hasOthers) || !FixOutline(outline, repairs_);
}

/// Closes what the tag shows to have ended, but never the root element.
void Pass::CloseBefore(const Token& tag) {
  const int roots = !open_.empty() && open_.front().name == tag.name;
  if (IsIn(kNeverNested, tag.name) && CountOf(tag.name) > roots) Close(tag.name, tag);
  while (open_.size() > 1 && IsIn(kLeaves, open_.back().name) && IsIn(kAfterLeaves, tag.name))
    Close(open_.back().name, tag);
}

/// Closes the innermost element of this name, and those inside it.
void Pass::Close(std::string_view name, const Token& by) {
  const std::size_t begin = out_.size();
  for (bool isThis = false; !isThis;) {
    isThis = open_.back().name == name;
    CloseInnermost(by.at);
  }
  const bool isEndTag = by.kind == TokenKind::kEnd;
  Repair(RepairKind::kEndTag, by.at, isEndTag ? by.text : std::string_view(),
         std::string_view(out_).substr(begin));
}

void Pass::CloseInnermost(std::size_t contentEnd) {
  const Open element = open_.back();
  if (contentEnd > element.contentAt) CheckText(element, contentEnd);
  out_.append("</").append(element.name) += '>';
  --counts_[element.name];
  if (element.name == "item") tags_.clear();
  open_.pop_back();
}

void Pass::TakeEnd(const Token& token) {
  const std::string_view name = Bound(names_.Element(token.name));
  if (CountOf(name) == 0) return Repair(RepairKind::kEndTag, token.at, token.text, {});
  if (open_.back().name == name) return CloseInnermost(token.at);
  Close(name, token);
}

void Pass::Finish() {
  const std::size_t begin = out_.size();
  while (!open_.empty()) CloseInnermost(text_.size());
  if (out_.size() > begin)
    Repair(RepairKind::kCutOff, text_.size(), {}, std::string_view(out_).substr(begin));
}

/// Mentions texts of feeds that are unusual.
void Pass::CheckText(const Open& element, std::size_t end) {
  if (!repairs_ || CountOf("item") == 0) return;
  if (element.name == "category" || element.name == "dc:subject")
    CheckTag(Trimmed(text_.substr(element.contentAt, end - element.contentAt)));
  const bool isDate = element.name == "pubDate" || element.name == "dc:date";
  const bool isAddress = element.name == "link" || element.name == "guid";
  if (!isDate && !isAddress) return;
  constexpr std::size_t kMost = 4096;  // no address or date is longer
  std::string_view raw =
      Trimmed(text_.substr(element.contentAt, std::min(end - element.contentAt, kMost)));
  constexpr std::string_view kCData = "<![CDATA[";
  if (raw.substr(0, kCData.size()) == kCData)
    raw = raw.substr(kCData.size(), raw.find("]]>") - kCData.size());
  DateReading date;
  if (isDate && !raw.empty() && !ReadDate(raw.data(), raw.size(), &date))
    Repair(RepairKind::kDate, element.contentAt, raw, {});
  if (isAddress) FixAddress(raw, element.contentAt, repairs_);
}

/// Mentions the tags that the reader of feeds leaves out.
void Pass::CheckTag(std::string_view tag) {
  if (tag.empty() || tags_.contains(tag)) return;
  if (tags_.size() == kMostTags)
    Repair(RepairKind::kTags, Where(tag), tag, {});
  else
    tags_.insert(tag);
}

// Attributes.

/// A name without its prefix if that will not be declared: there can be too many of them.
std::string_view Pass::Bound(std::string_view name) const {
  const std::string_view prefix = PrefixOf(name);
  const auto& prefixes = known_ ? known_->prefixes : facts_.prefixes;
  const bool isBound = prefix.empty() || prefix == "xml" || prefixes.find(prefix) != prefixes.end();
  return isBound ? name : name.substr(prefix.size() + 1);
}

/// The same for a name that is used. Every prefix is declared in the root element.
std::string_view Pass::Declare(std::string_view name, std::size_t at) {
  const std::string_view prefix = PrefixOf(name);
  const bool isFull = facts_.prefixes.size() == kMostPrefixes;
  if (prefix.empty() || prefix == "xml" || isFull) return Bound(name);
  const bool isNew = facts_.prefixes.emplace(prefix).second;
  const bool isMissing = known_ && known_->declared.find(prefix) == known_->declared.end();
  if (isNew && isMissing)
    Repair(RepairKind::kPrefix, at, name, "xmlns:" + std::string(prefix) + "=\"...\"");
  return Bound(name);
}

void Pass::FixAttributes(Token& tag) {
  std::vector<Attribute>& all = tag.attributes;
  std::size_t kept = 0;
  for (Attribute& attribute : all)
    if (!IsDeclaration(attribute) && IsNewAttribute(attribute, {all.data(), kept}))
      all[kept++] = attribute;
  all.resize(kept);
}

/// Namespaces are declared anew, in the root element.
bool Pass::IsDeclaration(const Attribute& attribute) {
  if (attribute.name == "xmlns") return true;
  if (PrefixOf(attribute.name) != "xmlns") return false;
  facts_.declared.emplace(attribute.name.substr(6));
  return true;
}

bool Pass::IsNewAttribute(Attribute& attribute, std::span<const Attribute> before) {
  const std::string_view name = names_.Attribute(attribute.name);
  if (IsFaulty(attribute.name, name)) Repair(RepairKind::kName, attribute.at, attribute.name, name);
  attribute.name = Declare(name, attribute.at);
  const bool isFull = before.size() == kMostAttributes;
  const bool isNew = std::none_of(before.begin(), before.end(),
                                  [&](const Attribute& a) { return a.name == attribute.name; });
  if (isNew && !isFull) return true;
  Repair(isFull ? RepairKind::kTooMany : RepairKind::kTwice, attribute.at, attribute.name, {});
  return false;
}

// Writing.

void Pass::PutTag(const Token& tag) {
  out_.append("<").append(tag.name);
  if (!hasRoot_ && known_)
    for (const std::string& prefix : known_->prefixes)
      out_.append(" xmlns:").append(prefix).append("=\"urn:").append(prefix).append("\"");
  for (const Attribute& attribute : tag.attributes) {
    out_.append(" ").append(attribute.name).append("=\"");
    PutEscaped(attribute.value);
    out_ += '"';
  }
  out_.append(tag.isEmpty ? "/>" : ">");
}

void Pass::PutEscaped(std::string_view raw) {
  static constexpr ByteSet kSpecial("&<>\"");
  while (!raw.empty()) {
    const std::size_t next = kSpecial.Find(raw);
    out_.append(raw.substr(0, next));
    raw.remove_prefix(next);
    if (raw.empty()) return;
    if (raw[0] == '<') Repair(RepairKind::kLessThan, Where(raw), "<", "&lt;");
    const std::size_t size = raw[0] == '&' ? PutReference(raw) : 1;
    if (raw[0] != '&') out_ += raw[0] == '<' ? "&lt;" : raw[0] == '>' ? "&gt;" : "&quot;";
    raw.remove_prefix(size);
  }
}

/// Writes the reference, or the '&', at the start of a text, and returns its size.
std::size_t Pass::PutReference(std::string_view rest) {
  const Reference reference = ReadReference(rest);
  const std::string_view found = rest.substr(0, std::max<std::size_t>(reference.size, 1));
  const std::size_t begin = out_.size();
  if (reference.isXml) return out_.append(found), found.size();
  if (reference.character)
    AppendUtf8(out_, reference.character);
  else if (found.substr(0, 2) == "&#")
    AppendUtf8(out_, 0xFFFD);
  else
    out_.append("&amp;").append(found.substr(1));
  Repair(reference.size ? RepairKind::kEntity : RepairKind::kAmpersand, Where(rest), found,
         std::string_view(out_).substr(begin));
  return found.size();
}

}  // namespace

std::string MakeWellFormed(std::string_view text, RepairList& repairs) {
  const ExpandedText expanded(text);
  const Facts facts = [&] {
    Pass survey(expanded.text(), nullptr, nullptr);
    survey.Run();
    return survey.facts();
  }();
  RepairList found;
  Pass pass(expanded.text(), &facts, &found);
  pass.Run();
  repairs.Append(found, [&](std::size_t at) { return expanded.OriginalPlace(at); });
  return pass.TakeDocument();
}

}  // namespace vosmere::importing
