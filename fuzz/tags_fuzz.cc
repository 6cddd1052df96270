// Any text splits into tags: none is empty, has a separator in it or is there twice; and the tags
// with a separator between them split into the same tags again. The text is UTF-16.
#include <cstring>
#include <string>
#include <vector>

#include "fuzz/support.h"
#include "vosmere/base/ascii.h"
#include "vosmere/tree/url_prop.h"

using namespace vosmere;
using namespace vosmere::fuzz;

namespace {

std::vector<std::u16string> Split(std::u16string text) {
  std::vector<WChar> units(text.begin(), text.end());
  units.push_back(0);
  CUrlProp property;
  property.SetTagsList(CUrlProp::GenerateRBstrItemList(units.data()));
  std::vector<std::u16string> tags;
  for (auto* cell = property.GetTagsHead(); cell; cell = cell->next) {
    const WideView tag(cell->data);
    tags.emplace_back(tag.begin(), tag.end());
    Require(property.HasTag(cell->data));
  }
  CUrlProp::DeleteTagsList(property.DetachTagsHead());
  return tags;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::u16string text(size / 2, u'\0');
  std::memcpy(text.data(), data, text.size() * 2);
  const std::vector<std::u16string> tags = Split(text);
  std::u16string joined;
  for (const std::u16string& tag : tags) {
    Require(!tag.empty());
    for (const char16_t unit : tag) Require(!CUrlProp::IsSeparator(unit));
    joined += tag + u",;"[joined.size() % 2];
  }
  Require(Split(joined) == tags);
  return 0;
}
