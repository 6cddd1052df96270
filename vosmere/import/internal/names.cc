// Makes valid names.
#include "vosmere/import/internal/names.h"

#include <algorithm>

#include "vosmere/import/internal/utf8_text.h"

namespace vosmere::importing {
namespace {

constexpr std::size_t kLongest = 1000;

/// Elements that are known in any case.
constexpr struct {
  std::string_view name;
} kElements[] = {{"outline"}, {"item"},   {"title"},    {"link"},   {"description"},
                 {"pubDate"}, {"author"}, {"category"}, {"guid"},   {"opml"},
                 {"head"},    {"body"},   {"rss"},      {"channel"}};

bool IsNameStart(char c) {
  return ascii::IsLetter(c) || c == '_';
}
bool IsNamePart(char c) {
  return IsNameStart(c) || ascii::IsDigit(c) || c == '-' || c == '.';
}

bool IsSimple(std::string_view name) {
  return !name.empty() && name.size() <= kLongest && IsNameStart(name[0]) &&
         std::all_of(name.begin(), name.end(), IsNamePart);
}

bool IsName(std::string_view name) {
  const std::size_t colon = name.find(':');
  if (colon == name.npos) return IsSimple(name);
  const std::string_view prefix = name.substr(0, colon);
  return IsSimple(prefix) && IsSimple(name.substr(colon + 1)) && prefix != "xmlns";
}

}  // namespace

std::string_view Names::Attribute(std::string_view name) {
  if (IsName(name)) return name;
  std::string made(name.substr(0, kLongest));
  std::replace_if(
      made.begin(), made.end(), [](char c) { return !IsNamePart(c); }, '_');
  if (made.empty() || !IsNameStart(made[0])) made.insert(0, 1, '_');
  return *made_.insert(made).first;
}

std::string_view Names::Element(std::string_view name) {
  const auto* const known = FindNoCase(kElements, name);
  return known ? known->name : Attribute(name);
}

bool IsFaulty(std::string_view name, std::string_view made) {
  return name != made && std::none_of(name.begin(), name.end(),
                                      [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

std::string_view PrefixOf(std::string_view name) {
  const std::size_t colon = name.find(':');
  return colon == name.npos ? std::string_view() : name.substr(0, colon);
}

}  // namespace vosmere::importing
