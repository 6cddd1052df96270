// The bound on the text that readers collect from nested elements.
#include "vosmere/xml/nested_texts.h"

#include <cstdio>
#include <vector>

#include "vosmere/base/document_error.h"

namespace vosmere::xml {
namespace {

constexpr int kFreeLevels = 4;
constexpr std::size_t kMostHeld = std::size_t{16} * 1024 * 1024;
constexpr std::size_t kNodeCost = 8;  // visiting a node costs time, even if it has no text

}  // namespace

void NestedTexts::Enter(const XmlNode& element) {
  if (++open_ <= kFreeLevels) return;
  std::vector<XmlNode> following;  // the next sibling of each open element; no recursion
  for (XmlNode node = element.FirstChild(); node || !following.empty();) {
    if (!node) {
      node = following.back();
      following.pop_back();
    } else if (node.Type() == kXmlElement) {
      Count(kNodeCost);
      following.push_back(node.NextSibling());
      node = node.FirstChild();
    } else {
      const bool isText = node.Type() == kXmlText || node.Type() == kXmlCData;
      Count(kNodeCost + (isText ? node.Text().view().size : 0));
      node = node.NextSibling();
    }
  }
}

void NestedTexts::Count(std::size_t cost) {
  held_ += cost;
  if (held_ <= kMostHeld) return;
  DocumentFailure failure;
  failure.error.fault = DocumentFault::kExpandsTooMuch;
  std::snprintf(failure.error.reason, sizeof failure.error.reason,
                "nested texts expand to too much text");
  throw failure;
}

}  // namespace vosmere::xml
