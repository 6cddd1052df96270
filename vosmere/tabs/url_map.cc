// Groups of web pages that have the same address.
#include "vosmere/tabs/url_map.h"

#include <memory>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {
namespace {

bool IsShortEnough(const WChar* url) {
  return url && WideLength(url) < CUrlNode::kTextLimit;
}

}  // namespace

CUrlMapItem::~CUrlMapItem() {
  list::Delete(pages_, [](CBaseNode*) {});
}

CUrlMapItem* CUrlMapItem::New(const WChar* url, CUrlNode* page) {
  return NullIfNoMemory([=] {
    std::unique_ptr<CUrlMapItem> item(new CUrlMapItem);
    item->url_ = HeapText(IsShortEnough(url) ? url : nullptr);
    return item->AddUrlNode(page) ? item.release() : nullptr;
  });
}

void CUrlMapItem::Delete(CUrlMapItem* item) {
  delete item;
}

bool CUrlMapItem::AddUrlNode(CUrlNode* page) {
  return list::Append(pages_, page) != nullptr;
}

int CUrlMapItem::DeleteUrlNode(CUrlNode* page) {
  const int count = GetNumberUrlNodes();
  return list::Remove(pages_, page) ? count - 1 : count;
}

int CUrlMapItem::GetNumberUrlNodes() const {
  int count = 0;
  for (const PageList* cell = pages_; cell; cell = cell->next) ++count;
  return count;
}

void CUrlMapItem::ModifyURL(const WChar* url) {
  if (!IsShortEnough(url)) return;
  HeapText copy;  // `url` may be one of the texts that are about to be replaced
  copy.AssignOrNull(url);
  if (!copy.get()) return;
  for (PageList* cell : chain::Cells(pages_))
    static_cast<CUrlNode*>(cell->data)->SetUrl(copy.get());
  url_ = std::move(copy);
}

}  // namespace vosmere
