// Looks for prefixes at the colons of a document, which are few.
#include "vosmere/import/internal/prefixes.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "vosmere/base/ascii.h"

namespace vosmere::importing {
namespace {

constexpr std::size_t kLongest = 40;
constexpr std::size_t kMost = 30;

bool IsNamePart(char c) {
  return ascii::IsLetter(c) || ascii::IsDigit(c) || c == '_' || c == '-' || c == '.';
}

/// The prefix that ends at a colon; empty if it is not one in a tag.
std::string_view PrefixAt(std::string_view bytes, std::size_t colon) {
  std::size_t begin = colon;
  while (begin > 0 && colon - begin < kLongest && IsNamePart(bytes[begin - 1])) --begin;
  const char before = begin > 0 ? bytes[begin - 1] : '\0';
  const bool isElement = before == '<' || before == '/';
  if (!isElement && !ascii::IsBlank(before)) return {};
  std::size_t end = colon + 1;
  while (end < bytes.size() && end - colon < kLongest && IsNamePart(bytes[end])) ++end;
  const bool isName = end > colon + 1 && end < bytes.size() && (isElement || bytes[end] == '=');
  return isName ? bytes.substr(begin, colon - begin) : std::string_view();
}

bool AddNew(std::vector<std::string_view>& names, std::string_view name) {
  const bool isNew = std::find(names.begin(), names.end(), name) == names.end();
  if (isNew) names.push_back(name);
  return names.size() <= kMost;
}

}  // namespace

bool MayLackPrefix(std::string_view bytes) {
  std::vector<std::string_view> declared = {"xml", "xmlns"}, used;
  for (std::size_t at = bytes.find(':'); at != bytes.npos; at = bytes.find(':', at + 1)) {
    const std::string_view prefix = PrefixAt(bytes, at);
    if (prefix.empty()) continue;
    const std::string_view name = bytes.substr(at + 1, kLongest);
    const bool isDeclaration = prefix == "xmlns";
    const auto end = std::find_if_not(name.begin(), name.end(), IsNamePart) - name.begin();
    if (!AddNew(isDeclaration ? declared : used,
                isDeclaration ? name.substr(0, static_cast<std::size_t>(end)) : prefix))
      return true;
  }
  return std::any_of(used.begin(), used.end(), [&](std::string_view prefix) {
    return std::find(declared.begin(), declared.end(), prefix) == declared.end();
  });
}

}  // namespace vosmere::importing
