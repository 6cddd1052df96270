// Replaces references to the entities that a document declares itself.
#include "vosmere/import/internal/own_entities.h"

#include <algorithm>
#include <utility>

#include "vosmere/import/internal/references.h"
#include "vosmere/import/internal/utf8_text.h"

namespace vosmere::importing {
namespace {

constexpr std::size_t kFreeExpansion = std::size_t{4} * 1024 * 1024;
constexpr std::size_t kReferenceCost = 64;  // however short the replacement is
constexpr std::size_t kLongestSubset = std::size_t{256} * 1024;
constexpr std::size_t kLongestLiteral = std::size_t{64} * 1024;
constexpr int kDeepestNesting = 20;

std::string_view NameAt(std::string_view text, std::size_t at) {
  static constexpr ByteSet kEnds(std::string_view("&;<>=%#/'\"[]() \t\r\n\0", 19));
  const std::string_view rest = text.substr(std::min(at, text.size()));
  return rest.substr(0, kEnds.Find(rest));
}

}  // namespace

ExpandedText::ExpandedText(std::string_view text) : original_(text) {
  const std::size_t subset = FindSubset();
  const std::size_t end = subset == text.npos ? subset : ReadSubset(subset);
  if (end == text.npos || entities_.empty()) return;
  CopyUpTo(subset - 1);
  copied_ = end;
  ExpandContent();
}

std::size_t ExpandedText::Opaque::After(std::string_view text, std::size_t at) {
  for (auto& kind : kinds_)
    if (text.substr(at, kind.begin.size()) == kind.begin && !kind.isGone) {
      const std::size_t found = text.find(kind.end, at + kind.begin.size());
      kind.isGone = found == text.npos;
      return kind.isGone ? at : found + kind.end.size();
    }
  return at;
}

/// The position after the '[' of the document type; npos without one.
std::size_t ExpandedText::FindSubset() {
  constexpr std::string_view kDoctype = "<!DOCTYPE";
  std::size_t at = original_.find('<');
  for (std::size_t next; at != original_.npos; at = original_.find('<', next))
    if ((next = opaque_.After(original_, at)) == at) break;
  if (at == original_.npos || original_.substr(at, kDoctype.size()) != kDoctype)
    return original_.npos;
  at = original_.find_first_of("[>", at);
  return at != original_.npos && original_[at] == '[' ? at + 1 : original_.npos;
}

std::size_t ExpandedText::AfterBlanks(std::size_t at) const {
  while (at < original_.size() && ascii::IsBlank(original_[at])) ++at;
  return at;
}

/// Returns the position after the ']'; npos if it is missing or too far away.
std::size_t ExpandedText::ReadSubset(std::size_t at) {
  const std::size_t limit = std::min(original_.size(), at + kLongestSubset);
  while (at < limit && original_[at] != ']')
    if (original_[at] != '<')
      ++at;
    else if (const std::size_t next = opaque_.After(original_, at); next != at)
      at = next;
    else
      at = ReadDeclaration(at);
  return at < limit ? at + 1 : original_.npos;
}

std::size_t ExpandedText::ReadDeclaration(std::size_t at) {
  constexpr std::string_view kEntity = "<!ENTITY";
  std::string_view name;
  if (original_.substr(at, kEntity.size()) == kEntity) {
    name = NameAt(original_, AfterBlanks(at + kEntity.size()));
    at = AfterBlanks(at + kEntity.size()) + name.size();
  }
  bool isValue = !name.empty();  // a literal after the name, not after SYSTEM
  for (at = AfterBlanks(at); at < original_.size() && original_[at] != '>'; ++at) {
    const char c = original_[at];
    if (c == '"' || c == '\'') {
      const std::size_t end = std::min(original_.find(c, at + 1), original_.size());
      if (isValue) Declare(name, original_.substr(at + 1, end - at - 1));
      at = end;
    }
    isValue = false;
  }
  return at + 1;
}

/// In XML the first declaration counts, and references to characters are replaced in it.
void ExpandedText::Declare(std::string_view name, std::string_view literal) {
  constexpr std::string_view kPredefined[] = {"amp", "apos", "gt", "lt", "quot"};
  if (literal.size() > kLongestLiteral ||
      std::count(std::begin(kPredefined), std::end(kPredefined), name))
    return;
  std::string text;
  while (!literal.empty()) {
    const std::size_t next = std::min(literal.find("&#"), literal.size());
    text.append(literal, 0, next);
    literal.remove_prefix(next);
    if (literal.empty()) break;
    const Reference reference = ReadReference(literal);
    const std::size_t size = std::max<std::size_t>(reference.size, 1);
    if (reference.character)
      AppendUtf8(text, reference.character);
    else
      text.append(literal, 0, size);
    literal.remove_prefix(size);
  }
  entities_.emplace(name, std::move(text));
}

void ExpandedText::CopyUpTo(std::size_t end) {
  copies_.push_back({expanded_.size(), copied_, end - copied_});
  expanded_.append(original_, copied_, end - copied_);
  copied_ = end;
}

void ExpandedText::ExpandContent() {
  static constexpr ByteSet kSpecial("&<");
  std::size_t at = copied_;
  while ((at += kSpecial.Find(original_.substr(at))) < original_.size()) {
    if (original_[at] == '<') {
      at = std::max(opaque_.After(original_, at), at + 1);
      continue;
    }
    const std::string_view name = NameAt(original_, at + 1);
    const std::size_t end = at + 1 + name.size();
    if (end < original_.size() && original_[end] == ';' && entities_.contains(name)) {
      CopyUpTo(at);
      if (Replace(name, 0)) copied_ = end + 1;
    }
    at = end;
  }
  CopyUpTo(original_.size());
}

/// Writes what the entity means; false, and nothing, if that is too much.
bool ExpandedText::Replace(std::string_view name, int level) {
  const std::size_t limit = kFreeExpansion + original_.size(), begin = expanded_.size();
  const std::string& text = entities_.find(name)->second;
  if (level < kDeepestNesting && spent_ < limit) {
    spent_ += text.size() + kReferenceCost;
    Put(text, level);
    if (spent_ < limit) return true;
  }
  spent_ = limit;
  expanded_.resize(begin);
  return false;
}

/// In an attribute's value a quotation mark of an entity does not end the value.
void ExpandedText::Put(std::string_view text, int level) {
  static constexpr ByteSet kSpecial("<&\"'");
  const bool isMarkup = text.find('<') != text.npos;
  Opaque opaque;
  for (std::size_t at = 0, next; at < text.size(); at = next) {
    next = std::max(kSpecial.Find(text, at), at + 1);
    const char c = text[at];
    if (c == '<') next = std::max(opaque.After(text, at), next);
    if (c == '&') {
      const std::string_view name = NameAt(text, at + 1);
      const std::size_t end = at + 1 + name.size();
      if (text.substr(end, 1) == ";" && entities_.contains(name) && Replace(name, level + 1)) {
        next = end + 1;
        continue;
      }
    }
    if (c == '"' && !isMarkup)
      expanded_ += "&#34;";
    else if (c == '\'' && !isMarkup)
      expanded_ += "&#39;";
    else
      expanded_.append(text, at, next - at);
  }
}

std::size_t ExpandedText::OriginalPlace(std::size_t at) const {
  if (copies_.empty()) return at;
  const auto after = std::upper_bound(copies_.begin(), copies_.end(), at,
                                      [](std::size_t a, const Copy& copy) { return a < copy.at; });
  const Copy& copy = after[-1];
  return copy.from + std::min(at - copy.at, copy.size);
}

}  // namespace vosmere::importing
