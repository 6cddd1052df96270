// Cuts markup that may be damaged into tags and texts.
#include "vosmere/import/internal/tokens.h"

#include <algorithm>
#include <string>
#include <utility>

#include "vosmere/import/internal/utf8_text.h"

namespace vosmere::importing {
namespace {

constexpr std::size_t kLongestName = 64;  // of those that are looked for inside values

/// Elements whose tags do not occur inside values, and attributes of which the same is true.
constexpr std::string_view kElements[] = {"outline", "body",    "head", "opml",
                                          "item",    "channel", "rss"};
constexpr std::string_view kAttributes[] = {"text",   "title",   "description", "type",
                                            "xmlUrl", "htmlUrl", "url"};

template <std::size_t N>
bool IsIn(const std::string_view (&names)[N], std::string_view name) {
  return std::any_of(names, names + N, [&](std::string_view n) { return SameNoCase(n, name); });
}

bool BeginsName(char c) {
  return ascii::IsLetter(c) || c == '_' || c == ':' || static_cast<unsigned char>(c) >= 0x80;
}
bool EndsName(char c) {
  static constexpr ByteSet kEnds(std::string_view("=>/<\"' \t\r\n\0", 11));
  return kEnds.Has(c);
}

}  // namespace

std::size_t Tokens::Finder::From(std::string_view text, std::size_t at) {
  const std::size_t found = isGone ? text.npos : text.find(what, at);
  isGone = found == text.npos;
  return found;
}

void Tokens::Repair(RepairKind kind, std::size_t at, std::string_view found,
                    std::string_view made) {
  if (repairs_ && markup_ == Markup::kXml) repairs_->Add(kind, at, found, made);
}

bool Tokens::Next(Token& token) {
  if (at_ >= text_.size()) return false;
  token.at = at_;
  token.attributes.clear();
  token.isEmpty = false;
  if (!BeginsMarkup(at_))
    ReadText(token);
  else if (At(at_ + 1) == '/')
    ReadEndTag(token);
  else if (BeginsName(At(at_ + 1)))
    ReadStartTag(token);
  else
    ReadOther(token);
  token.end = at_;
  if (token.kind != TokenKind::kCData) token.text = text_.substr(token.at, at_ - token.at);
  return true;
}

bool Tokens::BeginsMarkup(std::size_t at) const {
  if (text_[at] != '<') return false;
  const char next = At(at + 1);
  return BeginsName(next) || next == '!' || next == '?' || (next == '/' && BeginsName(At(at + 2)));
}

void Tokens::SkipBlanks() {
  while (at_ < text_.size() && ascii::IsBlank(text_[at_])) ++at_;
}

void Tokens::ReadText(Token& token) {
  token.kind = TokenKind::kText;
  do at_ = std::min(text_.find('<', at_ + 1), text_.size());
  while (at_ < text_.size() && !BeginsMarkup(at_));
}

void Tokens::ReadUntil(Token& token, Finder& end) {
  const std::size_t found = end.From(text_, at_);
  const std::size_t close =
      found == text_.npos ? tagEnd_.From(text_, at_) : found + end.what.size() - 1;
  if (found == text_.npos)
    Repair(close == text_.npos ? RepairKind::kCutOff : RepairKind::kMarkup, token.at,
           text_.substr(token.at, 20), {});
  at_ = close == text_.npos ? text_.size() : close + 1;
}

void Tokens::ReadOther(Token& token) {
  constexpr std::string_view kCData = "<![CDATA[", kComment = "<!--", kDoctype = "<!DOCTYPE";
  const auto begins = [&](std::string_view mark) {
    return SameNoCase(text_.substr(at_, mark.size()), mark);
  };
  token.kind = TokenKind::kOther;
  if (begins(kCData)) {
    token.kind = TokenKind::kCData;
    const std::size_t begin = at_ + kCData.size();
    const std::size_t end = cdataEnd_.From(text_, begin);
    if (end == text_.npos) Repair(RepairKind::kCutOff, text_.size(), {}, cdataEnd_.what);
    token.text = text_.substr(begin, end - begin);
    at_ = end == text_.npos ? text_.size() : end + cdataEnd_.what.size();
  } else if (begins(kComment)) {
    ReadUntil(token, commentEnd_);
    const std::string_view inner = text_.substr(token.at, at_ - token.at - 1);
    const std::size_t dashes = inner.find("--", kComment.size());
    if (dashes != inner.npos && dashes + 2 < inner.size())
      Repair(RepairKind::kMarkup, token.at + dashes, "--", "-");
  } else if (At(at_ + 1) == '?') {
    ReadUntil(token, instructionEnd_);
  } else {
    const bool isDoctype = begins(kDoctype) && !std::exchange(sawDoctype_, true);
    const std::size_t subset = isDoctype ? text_.find_first_of("[>", at_) : text_.npos;
    if (At(subset) == '[') at_ = std::min(subsetEnd_.From(text_, subset), text_.size());
    ReadUntil(token, tagEnd_);
  }
}

std::string_view Tokens::ReadName() {
  const std::size_t begin = at_;
  while (at_ < text_.size() && !EndsName(text_[at_])) ++at_;
  return text_.substr(begin, at_ - begin);
}

void Tokens::ReadEndTag(Token& token) {
  at_ += 2;
  token.kind = TokenKind::kEnd;
  token.name = ReadName();
  SkipBlanks();
  const std::size_t close = text_.find_first_of("<>", at_);
  if (close == text_.npos) token.kind = TokenKind::kCut;
  if (close != at_ && close != text_.npos)
    Repair(RepairKind::kTag, at_, text_.substr(at_, close - at_), {});
  else if (At(close) == '<')
    Repair(RepairKind::kTag, close, {}, ">");
  at_ = close == text_.npos ? text_.size() : close + (text_[close] == '>');
}

void Tokens::ReadStartTag(Token& token) {
  ++at_;
  token.kind = TokenKind::kStart;
  token.name = ReadName();
  isOutline_ = SameNoCase(token.name, "outline");
  while (ReadAttribute(token)) {
  }
}

/// Reads up to the end of an attribute; false at the end of the tag.
bool Tokens::ReadAttribute(Token& token) {
  const std::size_t before = at_;
  SkipBlanks();
  if (at_ == text_.size()) return token.kind = TokenKind::kCut, false;
  if (text_[at_] == '<') return Repair(RepairKind::kTag, at_, {}, ">"), false;
  if (text_[at_] == '>') return ++at_, false;
  if (text_[at_] == '/' && At(at_ + 1) == '>') return token.isEmpty = true, at_ += 2, false;
  Attribute attribute{{}, {}, at_};
  if (EndsName(text_[at_])) {  // nothing that begins with this is an attribute
    Repair(RepairKind::kTag, at_, text_.substr(at_, 1), {});
    return ++at_, true;
  }
  if (before == at_) Repair(RepairKind::kTag, at_, {}, " ");
  attribute.name = ReadName();
  SkipBlanks();
  if (At(at_) == '=') {
    ++at_;
    SkipBlanks();
    if (!ReadValue(attribute)) return token.kind = TokenKind::kCut, false;
  } else {
    Repair(RepairKind::kNoQuotes, attribute.at, attribute.name, "=\"\"");
  }
  token.attributes.push_back(attribute);
  return true;
}

bool Tokens::ReadValue(Attribute& attribute) {
  if (at_ == text_.size()) return false;
  if (text_[at_] == '"' || text_[at_] == '\'') return ReadQuoted(attribute);
  ReadUnquoted(attribute);
  return true;
}

void Tokens::ReadUnquoted(Attribute& attribute) {
  const std::size_t begin = at_;
  while (at_ < text_.size() && !ascii::IsBlank(text_[at_]) && text_[at_] != '>') ++at_;
  const bool endsTag = markup_ == Markup::kXml && at_ > begin && text_[at_ - 1] == '/';
  if (endsTag && At(at_) == '>') --at_;
  attribute.value = text_.substr(begin, at_ - begin);
  Repair(RepairKind::kNoQuotes, begin, attribute.value,
         "\"" + std::string(attribute.value.substr(0, 80)) + "\"");
}

bool Tokens::ReadQuoted(Attribute& attribute) {
  const char quote = text_[at_];
  const std::size_t begin = ++at_;
  bool& isOpenEnded = isOpenEnded_[quote == '"'];
  if (!isOpenEnded && FindEndOfValue(begin, quote)) {
    attribute.value = text_.substr(begin, valueEnd_ - begin);
    at_ = valueNext_;
    const std::size_t inner = attribute.value.find(quote);
    if (inner != attribute.value.npos) Repair(RepairKind::kQuote, begin + inner, "\"", "&quot;");
    return true;
  }
  isOpenEnded = true;
  const std::size_t close = tagEnd_.From(text_, begin);
  if (close == text_.npos) return at_ = text_.size(), false;
  at_ = close - (close > begin && text_[close - 1] == '/');
  attribute.value = text_.substr(begin, at_ - begin);
  Repair(RepairKind::kNoQuotes, at_, {}, std::string_view(&quote, 1));
  return true;
}

/// Finds where the value that begins at `begin` ends. A quotation mark inside it is a repair.
bool Tokens::FindEndOfValue(std::size_t begin, char quote) {
  static constexpr ByteSet kStops[] = {ByteSet("'<"), ByteSet("\"<")};
  const ByteSet& stops = kStops[quote == '"'];
  for (std::size_t at = begin; (at = stops.Find(text_, at)) < text_.size(); ++at) {
    if (text_[at] == quote) {
      valueEnd_ = at;
      valueNext_ = at + 1;
      if (markup_ == Markup::kHtml) return true;
      if (EndsBeforeAttribute(begin, at)) return true;
      if (EndsValue(at)) return true;
    } else if (markup_ == Markup::kXml && EndsBeforeElement(begin, at)) {
      return true;
    }
  }
  return false;
}

/// Whether an attribute or the end of the tag follows a quotation mark.
bool Tokens::EndsValue(std::size_t quoteAt) const {
  const std::size_t next = AfterBlanks(quoteAt + 1);
  const char c = At(next);
  if (c == '<') return !isOutline_ || BeginsKnownElement(next);
  if (c == '>') return EndsTag(next);
  if ((c == '/' || c == '?') && At(next + 1) == '>') return EndsTag(next + 1);
  if (!BeginsName(c)) return next == text_.size();
  std::size_t end = next;
  while (end < text_.size() && end - next < kLongestName && !EndsName(text_[end])) ++end;
  const std::size_t equals = AfterBlanks(end);
  if (At(equals) != '=') return false;
  const char quote = At(AfterBlanks(equals + 1));
  return !isOutline_ || quote == '"' || quote == '\'' ||
         IsIn(kAttributes, text_.substr(next, end - next));
}

/// Whether a '>' after a value ends the tag. Markup follows the tag of an outline: if text does,
/// the value goes on.
bool Tokens::EndsTag(std::size_t close) const {
  const std::size_t next = AfterBlanks(close + 1);
  return !isOutline_ || next == text_.size() || BeginsMarkup(next);
}

std::size_t Tokens::AfterBlanks(std::size_t at) const {
  while (at < text_.size() && ascii::IsBlank(text_[at])) ++at;
  return std::min(at, text_.size());
}

bool Tokens::BeginsKnownElement(std::size_t at) const {
  const std::size_t nameAt = at + 1 + (At(at + 1) == '/');
  std::size_t end = nameAt;
  while (end < text_.size() && end - nameAt < kLongestName && !EndsName(text_[end])) ++end;
  return IsIn(kElements, text_.substr(std::min(nameAt, text_.size()), end - nameAt));
}

/// Whether a '<' begins one of the known elements, so that the value before it has lost its end.
bool Tokens::EndsBeforeElement(std::size_t begin, std::size_t at) {
  if (!BeginsKnownElement(at)) return false;
  std::size_t last = at;
  const auto drop = [&](auto test) {
    while (last > begin && test(text_[last - 1])) --last;
  };
  drop(ascii::IsBlank<char>);
  drop([](char c) { return c == '>'; });
  drop([](char c) { return c == '/'; });
  valueNext_ = valueEnd_ = last;
  Repair(RepairKind::kNoQuotes, last, {}, "\"");
  return true;
}

/// Whether a quotation mark is that before the value of a known attribute, so that the value before
/// that attribute has lost its end.
bool Tokens::EndsBeforeAttribute(std::size_t begin, std::size_t quoteAt) {
  if (quoteAt < begin + 2 || text_[quoteAt - 1] != '=') return false;
  const std::size_t end = quoteAt - 1;
  std::size_t nameAt = end;
  while (nameAt > begin && end - nameAt < kLongestName && ascii::IsLetter(text_[nameAt - 1]))
    --nameAt;
  if (nameAt == begin || !ascii::IsBlank(text_[nameAt - 1])) return false;
  if (!IsIn(kAttributes, text_.substr(nameAt, end - nameAt))) return false;
  valueNext_ = valueEnd_ = nameAt - 1;
  Repair(RepairKind::kNoQuotes, valueEnd_, {}, "\"");
  return true;
}

}  // namespace vosmere::importing
