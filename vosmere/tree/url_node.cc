// Web pages.
#include "vosmere/tree/url_node.h"

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/tree/internal/blank_page.h"

namespace vosmere {

CUrlNode::CUrlNode() : url_(kBlankPage) {}

CUrlNode::CUrlNode(const CUrlNode* source)
    : CBaseNode(source),
      url_(source->url_.get()),
      author_(source->author_.get()),
      urlProp_(source->urlProp_ ? new CUrlProp(source->urlProp_.get()) : nullptr),
      itemType_(source->itemType_),
      relationUrl_(source->relationUrl_.get()) {}

CUrlNode::~CUrlNode() = default;

CUrlNode* CUrlNode::New() {
  return NullIfNoMemory([] { return new CUrlNode; });
}

CUrlNode* CUrlNode::New(CUrlNode* source) {
  return NullIfNoMemory([source] { return new CUrlNode(source); });
}

CUrlProp* CUrlNode::GetUrlProp() {
  if (!urlProp_) urlProp_.Assign(new (std::nothrow) CUrlProp);
  return urlProp_.get();
}

}  // namespace vosmere
