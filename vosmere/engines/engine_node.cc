// Search engines.
#include "vosmere/engines/engine_node.h"

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/base/internal/wide_literal.h"
#include "vosmere/tree/internal/blank_page.h"

namespace vosmere {
namespace {

constexpr WideLiteral kWebSearch(u"web");

}  // namespace

CEngineNode::CEngineNode() : url_(kBlankPage), searchType_(kWebSearch) {}

CEngineNode::CEngineNode(const CEngineNode* source)
    : CBaseNode(source),
      url_(source->url_.get()),
      iconUrl_(source->iconUrl_.get()),
      iconText_(source->iconText_.get()),
      searchType_(source->searchType_.get()),
      storedSite_(source->storedSite_.get()) {}

CEngineNode::~CEngineNode() = default;

CEngineNode* CEngineNode::New() {
  return NullIfNoMemory([] { return new CEngineNode; });
}

CEngineNode* CEngineNode::New(CEngineNode* source) {
  return NullIfNoMemory([source] { return new CEngineNode(source); });
}

}  // namespace vosmere
