// Expands the entities and attribute defaults of a document within limits.
#include "vosmere/platform/win32/entity_guard.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "vosmere/platform/internal/xml_document.h"

namespace vosmere::win32 {
namespace {

constexpr std::size_t kFreeExpansion = 4 * 1024 * 1024;
constexpr std::size_t kLongestLiteral = 64 * 1024;
constexpr int kDeepestNesting = 20;
constexpr int kMostAttributeDeclarations = 1000;
constexpr std::size_t kLongestSubset = 256 * 1024;
constexpr std::size_t kLongestDeclaration = 16 * 1024;
constexpr std::size_t kReferenceCost = 64;  // even a short one keeps the parser busy
constexpr std::size_t kDefaultCost = 24;    // of an attribute, even if its value is short

constexpr std::string_view kSpace = " \t\r\n";
constexpr std::string_view kNotInNames = " \t\r\n<>&;%'\"[](){}|,*+?=/!#";

/// Reads the tokens of a document from a position.
class Reader {
 public:
  explicit Reader(std::string_view text, std::size_t at = 0) : text_(text), at_(at) {}

  bool AtEnd() const { return at_ == text_.size(); }
  bool At(std::string_view token) const { return text_.substr(at_, token.size()) == token; }
  std::string_view Since(std::size_t start) const { return text_.substr(start, at_ - start); }
  std::size_t position() const { return at_; }

  void SkipSpace() { at_ = std::min(text_.find_first_not_of(kSpace, at_), text_.size()); }
  /// Moves to the next of the characters in `units`; false when there is none.
  bool SkipTo(std::string_view units) {
    at_ = std::min(text_.find_first_of(units, at_), text_.size());
    return !AtEnd();
  }
  /// Moves after the next `token`, or to the end.
  void SkipPast(std::string_view token) {
    const std::size_t found = text_.find(token, at_);
    at_ = found == text_.npos ? text_.size() : found + token.size();
  }
  /// Skips `token`; false when it is not next.
  bool Take(std::string_view token) {
    if (!At(token)) return false;
    at_ += token.size();
    return true;
  }
  /// The name at the position; empty when there is none.
  std::string_view TakeName() {
    const std::size_t start = at_;
    SkipTo(kNotInNames);
    return Since(start);
  }
  /// The next name, quoted literal with its quotes, or other character; empty at the end.
  std::string_view TakeToken() {
    SkipSpace();
    const std::size_t start = at_;
    if (!TakeName().empty() || AtEnd()) return Since(start);
    const std::string_view quote = text_.substr(at_++, 1);
    if (quote == "\"" || quote == "'") SkipPast(quote);
    return Since(start);
  }

 private:
  std::string_view text_;
  std::size_t at_;
};

bool IsLiteral(std::string_view token) {
  return token.size() > 1 && (token[0] == '"' || token[0] == '\'') && token.back() == token[0];
}

std::string_view WithoutQuotes(std::string_view literal) {
  return literal.substr(1, literal.size() - 2);
}

/// The effect of one use of a declared text.
struct Weight {
  int levels = 0;         // of declared texts nested in it
  std::size_t bytes = 0;  // of its whole expansion
};

/// The replacement text of an entity, or all attribute defaults of an element together.
struct Declared {
  std::string text;
  std::vector<std::pair<std::string, std::string>> attributes;  // names and quoted values
  bool external = false;
  bool beingWeighed = false;  // to notice an entity that refers to itself
  bool weighed = false;
  Weight weight;
};

/// An entity's literal with its character references replaced. References to characters that are no
/// markup may remain: they mean the same when they are read later.
std::string ReplacementText(std::string_view literal) {
  std::string text;
  Reader in(literal);
  for (std::size_t start = 0; !in.AtEnd(); start = in.position()) {
    in.SkipTo("&");
    text += in.Since(start);
    const std::size_t reference = in.position();
    const bool hexadecimal = in.Take("&#x");
    if (!hexadecimal && !in.Take("&#")) {
      text += in.Take("&") ? "&" : "";
      continue;
    }
    const std::string digits(in.TakeName());
    const unsigned long code = std::strtoul(digits.c_str(), nullptr, hexadecimal ? 16 : 10);
    if (in.Take(";") && (code == '\t' || code == '\n' || (code >= ' ' && code < 0x7F)))
      text += static_cast<char>(code);
    else
      text += in.Since(reference);
  }
  return text;
}

/// Expands one document: reads its declarations, measures what their uses expand to, and only then
/// expands them.
class EntityGuard {
 public:
  explicit EntityGuard(std::string_view document) : document_(document) {}

  /// See ExpandEntities. Empty when there is nothing to expand.
  std::string Expand(std::size_t doctype, std::size_t* content);

 private:
  using Declarations = std::map<std::string, Declared, std::less<>>;

  [[noreturn]] void RefuseHere(DocumentFault fault, const char* reason) const {
    Refuse(fault, reason, document_.substr(0, place_));
  }
  [[noreturn]] void RefuseDeclaration() const {
    RefuseHere(DocumentFault::kMalformed, "the document type declaration is not well-formed");
  }
  /// Adds to the expansion of the whole document, and refuses it when that is too much.
  void Spend(std::size_t bytes);
  /// Refuses declarations that are too long.
  void BoundSubset() const;

  void ReadSubset(Reader& in, int level);
  void ReadEntity(Reader& in);
  void ReadAttributes(Reader& in);
  void ReadInserted(Reader& in, int level);
  std::string_view TakeInDeclaration(Reader& in) const;

  /// The entity that a reference uses; null for a character and a predefined entity.
  Declared* UsedByReference(Reader& in);
  /// The defaults that a start tag uses; null for an element without any and for other markup.
  Declared* UsedByMarkup(Reader& in);
  /// Measures the expansion of a text, without expanding it.
  Weight Weigh(Reader in, int level);
  /// Measures a declared text when it is used for the first time.
  Weight WeighOnce(Declared& declared, int level);

  void ExpandText(Reader in, bool isValue, std::string* out);
  void ExpandTag(Reader* in, const Declared* defaults, std::string* out);

  const std::string_view document_;
  std::size_t place_ = 0;  // position in the document, for error messages
  std::size_t spent_ = 0;
  std::size_t subset_ = 0;    // where the declarations begin
  std::size_t inserted_ = 0;  // bytes that parameter entities add to them
  int attributeDeclarations_ = 0;
  bool namesOutside_ = false;  // whether entities may be declared outside the document
  Declarations entities_;
  Declarations parameterEntities_;
  Declarations defaults_;
};

std::string EntityGuard::Expand(std::size_t doctype, std::size_t* content) {
  Reader in(document_, doctype);
  in.Take("<!DOCTYPE");
  place_ = subset_ = doctype;
  for (std::string_view token; (token = in.TakeToken()) != ">";) {
    if (token.empty()) RefuseDeclaration();
    if (token == "[") ReadSubset(in, 0);
    if (IsLiteral(token)) namesOutside_ = true;
  }
  if (in.At("[")) RefuseDeclaration();  // some parsers take it for a part of the declaration
  *content = in.position();
  std::string expanded;
  if (Weigh(in, 0).levels == 0) return expanded;
  expanded = document_.substr(0, in.position());
  ExpandText(in, false, &expanded);
  return expanded;
}

void EntityGuard::Spend(std::size_t bytes) {
  spent_ += bytes;
  if (spent_ > kFreeExpansion + document_.size())
    RefuseHere(DocumentFault::kExpandsTooMuch, "the document expands to too much text");
}

// --- declarations ---

void EntityGuard::BoundSubset() const {
  if (place_ - subset_ + inserted_ > kLongestSubset)
    RefuseHere(DocumentFault::kExpandsTooMuch, "the document type declaration is too long");
}

void EntityGuard::ReadSubset(Reader& in, int level) {
  while (in.SkipSpace(), !in.AtEnd() && !in.Take("]")) {
    if (level == 0) place_ = in.position();
    BoundSubset();
    if (in.Take("<!--"))
      in.SkipPast("-->");
    else if (in.Take("<?"))
      in.SkipPast("?>");
    else if (in.Take("%"))
      ReadInserted(in, level);
    else if (in.Take("<!ENTITY"))
      ReadEntity(in);
    else if (in.Take("<!ATTLIST"))
      ReadAttributes(in);
    else if (in.Take("<!"))
      while (TakeInDeclaration(in) != ">") continue;
    else
      RefuseDeclaration();
  }
}

// In the internal subset, XML does not allow a reference to a parameter entity within a
// declaration, although lenient parsers accept it.
std::string_view EntityGuard::TakeInDeclaration(Reader& in) const {
  const std::string_view token = in.TakeToken();
  if (token.empty() || token == "%") RefuseDeclaration();
  return token;
}

void EntityGuard::ReadEntity(Reader& in) {
  std::string_view name = in.TakeToken();
  const bool parameter = name == "%";
  if (parameter) name = in.TakeToken();
  std::string_view token = TakeInDeclaration(in);
  Declared entity;
  entity.external = token == "SYSTEM" || token == "PUBLIC";
  if (!entity.external) {
    if (!IsLiteral(token)) RefuseDeclaration();
    if (token.size() > kLongestLiteral + 2)
      RefuseHere(DocumentFault::kExpandsTooMuch, "an entity is too long");
    if (token.find('%') != token.npos) RefuseDeclaration();
    entity.text = ReplacementText(WithoutQuotes(token));
  }
  while (token != ">") token = TakeInDeclaration(in);
  // In XML the first declaration of an entity counts, and emplace keeps it.
  (parameter ? parameterEntities_ : entities_).emplace(name, std::move(entity));
}

void EntityGuard::ReadAttributes(Reader& in) {
  Declared& defaults = defaults_[std::string(TakeInDeclaration(in))];
  for (std::string_view name; (name = TakeInDeclaration(in)) != ">";) {
    if (++attributeDeclarations_ > kMostAttributeDeclarations)
      RefuseHere(DocumentFault::kExpandsTooMuch, "too many attributes are declared");
    std::string_view token = TakeInDeclaration(in);
    if (token == "NOTATION") token = TakeInDeclaration(in);
    const std::size_t values = in.position();
    if (token == "(")
      while (TakeInDeclaration(in) != ")") continue;
    if (in.position() - values > kLongestDeclaration)
      RefuseHere(DocumentFault::kExpandsTooMuch, "an attribute declares too many values");
    token = TakeInDeclaration(in);
    if (token == "#" && TakeInDeclaration(in) == "FIXED") token = TakeInDeclaration(in);
    if (!IsLiteral(token)) continue;
    defaults.text += WithoutQuotes(token);
    defaults.attributes.emplace_back(name, token);
    defaults.weight.bytes += kDefaultCost;
  }
}

void EntityGuard::ReadInserted(Reader& in, int level) {
  const auto found = parameterEntities_.find(in.TakeName());
  if (!in.Take(";")) RefuseDeclaration();
  if (found == parameterEntities_.end() || found->second.external) {
    namesOutside_ = true;
    return;
  }
  if (level >= kDeepestNesting)
    RefuseHere(DocumentFault::kExpandsTooMuch, "entities are nested too deeply");
  inserted_ += found->second.text.size() + kReferenceCost;
  BoundSubset();
  Reader inserted(found->second.text);
  ReadSubset(inserted, level + 1);
}

// --- uses ---

Declared* EntityGuard::UsedByReference(Reader& in) {
  constexpr std::string_view kPredefined[] = {"lt", "gt", "amp", "quot", "apos"};
  if (in.Take("#")) return nullptr;
  const std::string_view name = in.TakeName();
  if (name.empty() || !in.Take(";"))
    RefuseHere(DocumentFault::kMalformed, "an entity reference is incomplete");
  if (std::find(std::begin(kPredefined), std::end(kPredefined), name) != std::end(kPredefined))
    return nullptr;
  const auto found = entities_.find(name);
  const bool declared = found != entities_.end();
  if (declared && !found->second.external) return &found->second;
  if (declared || namesOutside_)
    RefuseHere(DocumentFault::kRefersOutside, "the text refers to an entity outside the document");
  RefuseHere(DocumentFault::kMalformed, "the text refers to an entity that is not declared");
}

Declared* EntityGuard::UsedByMarkup(Reader& in) {
  if (in.Take("<!--")) {
    in.SkipPast("-->");
  } else if (in.Take("<![CDATA[")) {
    in.SkipPast("]]>");
  } else if (in.Take("<?")) {
    in.SkipPast("?>");
  } else if (in.Take("<")) {
    const auto found = defaults_.find(in.TakeName());
    if (found != defaults_.end()) return &found->second;
  }
  return nullptr;
}

Weight EntityGuard::Weigh(Reader in, int level) {
  Weight whole;
  while (in.SkipTo("&<")) {
    if (level == 0) place_ = in.position();
    Declared* const used = in.Take("&") ? UsedByReference(in) : UsedByMarkup(in);
    if (!used) continue;
    const Weight part = WeighOnce(*used, level + 1);
    if (level == 0) Spend(part.bytes);
    whole.levels = std::max(whole.levels, part.levels + 1);
    whole.bytes =
        std::min(whole.bytes + part.bytes + kReferenceCost, kFreeExpansion + document_.size() + 1);
  }
  return whole;
}

Weight EntityGuard::WeighOnce(Declared& declared, int level) {
  if (level + declared.weight.levels > kDeepestNesting)
    RefuseHere(DocumentFault::kExpandsTooMuch, "entities are nested too deeply");
  if (!declared.weighed) {
    if (declared.beingWeighed) RefuseHere(DocumentFault::kMalformed, "an entity refers to itself");
    declared.beingWeighed = true;
    const Weight inner = Weigh(Reader(declared.text), level);
    declared.weight.levels = inner.levels;
    declared.weight.bytes += declared.text.size() + inner.bytes;
    declared.weighed = true;
  }
  return declared.weight;
}

// --- expansion, after measuring ---

void EntityGuard::ExpandText(Reader in, bool isValue, std::string* out) {
  while (!in.AtEnd()) {
    const std::size_t start = in.position();
    if (in.Take("&")) {
      if (const Declared* const used = UsedByReference(in))
        ExpandText(Reader(used->text), isValue, out);
      else
        *out += in.Since(start);
    } else if (isValue && in.Take("\"")) {
      *out += "&#34;";
    } else if (isValue && in.Take("'")) {
      *out += "&#39;";
    } else if (in.At("<")) {
      const bool isTag = !in.At("<!") && !in.At("<?");
      const Declared* const defaults = UsedByMarkup(in);
      *out += in.Since(start);
      if (isTag) ExpandTag(&in, defaults, out);
    } else {
      in.SkipTo(isValue ? "&<\"'" : "&<");
      *out += in.Since(start);
    }
  }
}

// Defaults are added at the end of the tag, when all given attributes are known.
void EntityGuard::ExpandTag(Reader* in, const Declared* defaults, std::string* out) {
  std::vector<std::string_view> given;
  for (std::string_view token = "<"; token != ">" && !token.empty();) {
    const std::size_t start = in->position();
    token = in->TakeToken();
    if (IsLiteral(token)) {
      *out += token[0];
      ExpandText(Reader(WithoutQuotes(token)), true, out);
      *out += token[0];
      continue;
    }
    if (defaults && (token == "/" || token == ">")) {
      for (const auto& [name, value] : defaults->attributes) {
        if (std::find(given.begin(), given.end(), name) != given.end()) continue;
        given.push_back(name);
        *out += " " + name + "=" + value[0];
        ExpandText(Reader(WithoutQuotes(value)), true, out);
        *out += value[0];
      }
      defaults = nullptr;
    }
    given.push_back(token);
    *out += in->Since(start);
  }
}

}  // namespace

void Refuse(DocumentFault fault, const char* reason, std::string_view before) {
  DocumentFailure failure;
  failure.error.fault = fault;
  if (before.data()) {
    const std::string_view line = before.substr(before.rfind('\n') + 1);
    const auto startsCharacter = [](char byte) { return (byte & 0xC0) != 0x80; };
    failure.error.line = 1 + static_cast<LONG>(std::count(before.begin(), before.end(), '\n'));
    failure.error.column =
        1 + static_cast<LONG>(std::count_if(line.begin(), line.end(), startsCharacter));
  }
  std::snprintf(failure.error.reason, sizeof failure.error.reason, "%s", reason);
  throw failure;
}

std::string ExpandEntities(std::string_view text, std::size_t doctype, std::size_t* content) {
  return EntityGuard(text).Expand(doctype, content);
}

}  // namespace vosmere::win32
