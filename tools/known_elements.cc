#include "tools/known_elements.h"

#include <algorithm>

#include "tools/text.h"
#include "vosmere/tree/base_node.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::tool {
namespace {

/// Calls `test` with each part until it returns true, and returns that.
template <class Test>
bool AnyPart(std::string_view text, char separator, Test test) {
  for (;;) {
    const std::size_t end = text.find(separator);
    if (test(text.substr(0, end))) return true;
    if (end == std::string_view::npos) return false;
    text.remove_prefix(end + 1);
  }
}

bool SameLetter(char a, char b) {
  return FoldAscii(static_cast<unsigned char>(a)) == FoldAscii(static_cast<unsigned char>(b));
}

bool IsCalled(std::string_view name, std::string_view called) {
  if (!called.ends_with('*')) return name == called;
  called.remove_suffix(1);
  return name.size() >= called.size() &&
         std::equal(called.begin(), called.end(), name.begin(), SameLetter);
}

}  // namespace

Words::Words(const Vocabulary& vocabulary, std::string_view name, std::string_view scope) {
  const auto isScope = [=](std::string_view in) { return in == scope || in == "*"; };
  for (const Word& word : vocabulary.words)
    if (IsCalled(name, word.element) && AnyPart(word.in, ' ', isScope)) words_.push_back(&word);
}

std::optional<std::string_view> Words::DemandOn(std::string_view value) const {
  std::optional<std::string_view> demand;
  const auto isValue = [&](std::string_view known) {
    const std::size_t end = std::min(known.find_first_of("#?$<(!"), known.size());
    if (!IsCalled(value, known.substr(0, end))) return false;
    demand = known.substr(end);
    return true;
  };
  for (const Word* const word : words_)
    if (AnyPart(word->values, ' ', isValue)) break;
  return demand;
}

void CheckValue(std::string_view demand, const std::string& element, const std::string& attribute,
                const WChar* value, const Report& report) {
  const std::string text = ToUtf8(value);
  const std::string where = " (" + element + (attribute.empty() ? "" : ' ' + attribute) + ')';
  const auto isText = [&](std::string_view known) { return known == text; };
  switch (demand.empty() ? 0 : demand[0]) {
    case '#':
      if (!isText(std::to_string(xml::NumberFromText(value))))
        report("a number is read otherwise than it is written" + where);
      break;
    case '?':
      if (!isText("true") && !isText("false")) report("neither 'true' nor 'false'" + where);
      break;
    case '$':
      if (WideLength(value) > CBaseNode::kMaxUuidLength)
        report("an identity longer than 36 characters is cut");
      break;
    case '<':
      if (WideLength(value) >= std::stoul(std::string(demand.substr(1))))
        report((attribute.empty() ? element : attribute) + " is too long to be read");
      break;
    case '(':
      if (!AnyPart(demand.substr(1, demand.size() - 2), '|', isText))
        report("a value that is not known" + where);
      break;
    default: break;
  }
}

}  // namespace vosmere::tool
