#include "vosmere/platform/win32/entity_guard.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "vosmere/platform/code_page.h"
#include "vosmere/platform/xml_document.h"

namespace vosmere::win32 {
namespace {

constexpr std::size_t kFreeExpansion = 4 * 1024 * 1024;
constexpr std::size_t kLongestLiteral = 64 * 1024;
constexpr int kDeepestNesting = 20;
constexpr int kMostAttributeDeclarations = 1000;
constexpr std::size_t kReferenceCost = 64;  // it keeps the parser busy, however short the text
constexpr std::size_t kDefaultCost = 24;    // an attribute, however short its value

constexpr std::string_view kSpace = " \t\r\n";
constexpr std::string_view kNotInNames = " \t\r\n<>&;%'\"[](){}|,*+?=/!#";

[[noreturn]] void Refuse(DocumentFault fault, const char* reason, std::string_view before = {}) {
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

class Reader {
 public:
  explicit Reader(std::string_view text, std::size_t at = 0) : text_(text), at_(at) {}

  bool AtEnd() const { return at_ == text_.size(); }
  std::size_t position() const { return at_; }

  void SkipSpace() { at_ = std::min(text_.find_first_not_of(kSpace, at_), text_.size()); }
  /// To the next of `units`; false when there is none.
  bool SkipTo(std::string_view units) {
    at_ = std::min(text_.find_first_of(units, at_), text_.size());
    return !AtEnd();
  }
  void SkipPast(std::string_view token) {
    const std::size_t found = text_.find(token, at_);
    at_ = found == text_.npos ? text_.size() : found + token.size();
  }
  bool Take(std::string_view token) {
    if (text_.substr(at_, token.size()) != token) return false;
    at_ += token.size();
    return true;
  }
  /// Empty when there is none here.
  std::string_view TakeName() {
    const std::size_t start = at_;
    SkipTo(kNotInNames);
    return text_.substr(start, at_ - start);
  }
  /// The next name, quoted literal with its quotes, or other character; empty at the end.
  std::string_view TakeToken() {
    SkipSpace();
    const std::size_t start = at_;
    if (!TakeName().empty() || AtEnd()) return text_.substr(start, at_ - start);
    const std::string_view quote = text_.substr(at_++, 1);
    if (quote == "\"" || quote == "'") SkipPast(quote);
    return text_.substr(start, at_ - start);
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

/// What one use of a declared text sets off.
struct Weight {
  int levels = 0;  // of declared texts within
  std::size_t bytes = 0;
};

/// The replacement text of an entity, or all attribute defaults of an element.
struct Declared {
  std::string text;
  bool external = false;
  bool weighed = false;
  Weight weight;
};

/// An entity's literal with its character references resolved. What is not ASCII matters no more.
std::string ReplacementText(std::string_view literal) {
  std::string text;
  for (std::size_t at = 0; at < literal.size();) {
    const std::size_t reference = std::min(literal.find("&#", at), literal.size());
    text += literal.substr(at, reference - at);
    at = reference;
    if (at == literal.size()) break;
    const std::size_t end = std::min(literal.find(';', at), literal.size());
    const bool hexadecimal = literal.substr(at + 2, 1) == "x";
    const std::string digits(literal.substr(at + 2 + hexadecimal, end - at - 2));
    const unsigned long code = std::strtoul(digits.c_str(), nullptr, hexadecimal ? 16 : 10);
    text += code < 0x80 ? static_cast<char>(code) : '?';
    at = std::min(end + 1, literal.size());
  }
  return text;
}

class EntityGuard {
 public:
  explicit EntityGuard(std::string_view document) : document_(document) {}

  void Check(std::size_t doctype);

 private:
  using Declarations = std::map<std::string, Declared, std::less<>>;

  [[noreturn]] void RefuseHere(DocumentFault fault, const char* reason) const {
    Refuse(fault, reason, document_.substr(0, place_));
  }
  [[noreturn]] void RefuseDeclaration() const {
    RefuseHere(DocumentFault::kMalformed, "the document type declaration is not well-formed");
  }
  void Spend(std::size_t bytes);

  void ReadSubset(Reader& in, int level);
  void ReadEntity(Reader& in);
  void ReadAttributes(Reader& in);
  void ReadInserted(Reader& in, int level);
  std::string_view TakeInDeclaration(Reader& in) const;

  Declared* UsedByReference(Reader& in);
  Declared* UsedByMarkup(Reader& in);
  Weight Weigh(Reader in, int level);
  Weight WeighOnce(Declared& declared, int level);

  const std::string_view document_;
  std::size_t place_ = 0;  // in the document, of what is being looked at
  std::size_t spent_ = 0;
  int attributeDeclarations_ = 0;
  bool namesOutside_ = false;
  Declarations entities_;
  Declarations parameterEntities_;
  Declarations defaults_;
};

void EntityGuard::Check(std::size_t doctype) {
  Reader in(document_, doctype);
  in.Take("<!DOCTYPE");
  place_ = doctype;
  for (std::string_view token; (token = in.TakeToken()) != ">";) {
    if (token.empty()) RefuseDeclaration();
    if (token == "[") ReadSubset(in, 0);
    if (IsLiteral(token)) namesOutside_ = true;
  }
  Weigh(in, 0);
}

void EntityGuard::Spend(std::size_t bytes) {
  spent_ += bytes;
  if (spent_ > kFreeExpansion + document_.size())
    RefuseHere(DocumentFault::kExpandsTooMuch, "the document expands to too much");
}

// --- declarations ---

void EntityGuard::ReadSubset(Reader& in, int level) {
  while (in.SkipSpace(), !in.AtEnd() && !in.Take("]")) {
    if (level == 0) place_ = in.position();
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

// A parameter entity cannot stand within a declaration here, though a lenient parser takes it.
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
  entity.external = !IsLiteral(token);
  if (!entity.external) {
    if (token.size() > kLongestLiteral + 2)
      RefuseHere(DocumentFault::kExpandsTooMuch, "an entity is too long");
    if (token.find('%') != token.npos) RefuseDeclaration();
    entity.text = ReplacementText(WithoutQuotes(token));
  }
  while (token != ">") token = TakeInDeclaration(in);
  (parameter ? parameterEntities_ : entities_).emplace(name, std::move(entity));
}

void EntityGuard::ReadAttributes(Reader& in) {
  Declared& defaults = defaults_[std::string(TakeInDeclaration(in))];
  while (TakeInDeclaration(in) != ">") {
    if (++attributeDeclarations_ > kMostAttributeDeclarations)
      RefuseHere(DocumentFault::kExpandsTooMuch, "too many attributes are declared");
    std::string_view token = TakeInDeclaration(in);
    if (token == "NOTATION") token = TakeInDeclaration(in);
    if (token == "(")
      while (TakeInDeclaration(in) != ")") continue;
    token = TakeInDeclaration(in);
    if (token == "#" && TakeInDeclaration(in) == "FIXED") token = TakeInDeclaration(in);
    if (!IsLiteral(token)) continue;
    defaults.text += WithoutQuotes(token);
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
    RefuseHere(DocumentFault::kExpandsTooMuch, "entities are nested too deep");
  Spend(found->second.text.size() + kReferenceCost);
  Reader inserted(found->second.text);
  ReadSubset(inserted, level + 1);
}

// --- uses ---

Declared* EntityGuard::UsedByReference(Reader& in) {
  constexpr std::string_view kPredefined[] = {"lt", "gt", "amp", "quot", "apos"};
  if (in.Take("#")) return nullptr;
  const std::string_view name = in.TakeName();
  if (name.empty() || !in.Take(";"))
    RefuseHere(DocumentFault::kMalformed, "a reference has no name or no end");
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
    RefuseHere(DocumentFault::kExpandsTooMuch, "entities are nested too deep");
  if (!declared.weighed) {
    const Weight inner = Weigh(Reader(declared.text), level);
    declared.weight.levels = inner.levels;
    declared.weight.bytes += declared.text.size() + inner.bytes;
    declared.weighed = true;
  }
  return declared.weight;
}

// --- finding the declaration ---

template <class Unit>
bool StartsWith(const Unit* at, const Unit* end, std::string_view token) {
  return static_cast<std::size_t>(end - at) >= token.size() &&
         std::equal(token.begin(), token.end(), at);
}

template <class Unit>
const Unit* PastNext(const Unit* at, const Unit* end, std::string_view token) {
  at = std::search(at, end, token.begin(), token.end());
  return at == end ? end : at + token.size();
}

/// The document type declaration; null when the root element comes first.
template <class Unit>
const Unit* FindDoctype(const Unit* at, const Unit* end) {
  for (;;) {
    while (at != end && (*at == ' ' || *at == '\t' || *at == '\r' || *at == '\n')) ++at;
    if (StartsWith(at, end, "<?"))
      at = PastNext(at, end, "?>");
    else if (StartsWith(at, end, "<!--"))
      at = PastNext(at, end, "-->");
    else
      return StartsWith(at, end, "<!DOCTYPE") ? at : nullptr;
  }
}

void CheckNarrow(std::string_view text) {
  if (const char* const doctype = FindDoctype(text.data(), text.data() + text.size()))
    EntityGuard(text).Check(doctype - text.data());
}

std::vector<WChar> Units(std::string_view bytes, bool bigEndian) {
  std::vector<WChar> units(bytes.size() / 2);
  for (std::size_t i = 0; i < units.size(); ++i) {
    const auto first = static_cast<unsigned char>(bytes[2 * i]);
    const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
    units[i] = static_cast<WChar>(bigEndian ? first << 8 | second : second << 8 | first);
  }
  return units;
}

/// In these a byte of ASCII may mean something else, and so hide what is to be checked.
bool DeclaresShiftingEncoding(std::string_view bytes) {
  if (bytes.substr(0, 5) != "<?xml") return false;
  std::string declaration(bytes.substr(0, std::min(bytes.find("?>"), std::size_t{512})));
  for (char& c : declaration) c = static_cast<char>(FoldAscii(static_cast<unsigned char>(c)));
  const auto names = [&](const char* part) { return declaration.find(part) != std::string::npos; };
  return names("utf-7") || names("iso-2022") || names("iso2022") || names("cp5022") ||
         names("hz-gb");
}

}  // namespace

void GuardEntities(std::string_view bytes) {
  const auto at = [&](std::size_t i) {
    return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 1;
  };
  const bool littleEndian = at(1) == 0 || (at(0) == 0xFF && at(1) == 0xFE);
  const bool bigEndian = at(0) == 0 || (at(0) == 0xFE && at(1) == 0xFF);
  if (littleEndian || bigEndian) {
    const std::vector<WChar> units = Units(bytes, bigEndian);
    return GuardEntities(WideView(units.data(), units.size()));
  }
  if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.remove_prefix(3);
  if (DeclaresShiftingEncoding(bytes))
    Refuse(DocumentFault::kMalformed, "the document's encoding is not supported");
  CheckNarrow(bytes);
}

void GuardEntities(WideView text) {
  if (!text.empty() && text[0] == 0xFEFF) text = text.From(1);
  const WideView start = text.First(2);
  if (std::find(start.begin(), start.end(), 0) != start.end())
    Refuse(DocumentFault::kMalformed, "the document's encoding is not supported");
  if (!FindDoctype(text.begin(), text.end())) return;
  if (text.size > std::numeric_limits<int>::max() / 3)
    Refuse(DocumentFault::kExpandsTooMuch, "the document is too large to be checked");
  std::string utf8(text.size * 3, '\0');
  utf8.resize(WideToBytes(kCodePageUtf8, text.data, static_cast<int>(text.size), utf8.data(),
                          static_cast<int>(utf8.size())));
  CheckNarrow(utf8);
}

}  // namespace vosmere::win32
