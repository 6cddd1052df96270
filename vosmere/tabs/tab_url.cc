// The addresses of a tab.
#include "vosmere/tabs/tab_url.h"

#include <algorithm>
#include <memory>

#include "vosmere/base/chain.h"
#include "vosmere/base/internal/no_memory.h"
#include "vosmere/tree/internal/blank_page.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {
namespace {

/// No address is added to a tab that has more than this number.
constexpr int kFull = 150;

bool IsTopLevel(const CTabUrlItem* item) {
  return item->IsTopLevel();
}

bool IsRecorded(const WChar* url) {
  const WideView address(url);
  return !address.empty() && address.size < CUrlNode::kTextLimit && !SameText(url, kBlankPage);
}

}  // namespace

CTabUrlItem::~CTabUrlItem() = default;

CTabUrlItem* CTabUrlItem::New(const WChar* url, LONG zone) {
  return NullIfNoMemory([=] {
    HeapText copy(url);
    auto* const item = new CTabUrlItem;
    item->url_ = std::move(copy);
    item->zone_ = zone;
    return item;
  });
}

void CTabUrlItem::DeleteList(CTabUrlItem* head) {
  for (CTabUrlItem* item : chain::Cells(head)) delete item;
}

void CTabUrlItem::SetUrl(const WChar* url) {
  url_.AssignIfShorter(url, CUrlNode::kTextLimit);
}

CTabUrlData::~CTabUrlData() {
  CTabUrlItem::DeleteList(head_);
}

void CTabUrlData::AddUrl(const WChar* url, bool topLevel, void* dispatch) {
  // Takes the lock and releases it again; see the header.
  if (GetNumberItem() > kFull || !IsRecorded(url)) return;
  const SynchGuard guard(*this);
  if (CheckTheSameUrlItem(url, topLevel, dispatch)) return;
  // Created before anything is removed, so that nothing changes when memory runs out.
  CTabUrlItem* const item = CTabUrlItem::New(url, SecurityZone(url));
  if (!item) return detail::CountLostText();
  item->SetTopLevel(topLevel);
  item->SetDispatch(dispatch);
  if (topLevel) DeleteFirstTopLevel();
  FilterOutTheSameDispatch(dispatch);
  chain::Append(head_, item);
}

void CTabUrlData::ClearData() {
  const SynchGuard guard(*this);
  CTabUrlItem::DeleteList(std::exchange(head_, nullptr));
}

LONG CTabUrlData::GetZone(bool* lessTrustedFrame, int* count) {
  const SynchGuard guard(*this);
  return InternalGetZone(lessTrustedFrame, count);
}

int CTabUrlData::GetUrlItemList(CTabUrlItem** list) {
  const SynchGuard guard(*this);
  *list = nullptr;
  for (const CTabUrlItem* item : chain::Cells(head_)) {
    CTabUrlItem* const copy = CTabUrlItem::New(item->GetUrl(), item->GetZone());
    if (!copy) {
      detail::CountLostText();
      CTabUrlItem::DeleteList(std::exchange(*list, nullptr));
      return 0;
    }
    chain::Append(*list, copy);
  }
  return Count();
}

int CTabUrlData::GetNumberItem() {
  const SynchGuard guard(*this);
  return Count();
}

void CTabUrlData::UnsetTopLevelFlag() {
  for (CTabUrlItem* item : chain::Cells(head_)) item->SetTopLevel(false);
}

LONG CTabUrlData::GetHighestZone() const {
  if (!head_) return 0;
  LONG highest = head_->GetZone();
  for (const CTabUrlItem* item : chain::Cells(head_)) highest = std::max(highest, item->GetZone());
  return highest;
}

bool CTabUrlData::DeleteTabUrlItem(CTabUrlItem* item) {
  const std::unique_ptr<CTabUrlItem> owned(item);
  return chain::Unlink(head_, item);
}

bool CTabUrlData::FilterOutTheSameDispatch(void* dispatch) {
  CTabUrlItem* const found = chain::Find(
      head_, [dispatch](const CTabUrlItem* item) { return item->GetDispatch() == dispatch; });
  if (found) DeleteTabUrlItem(found);
  return found != nullptr;
}

bool CTabUrlData::CheckTheSameUrlItem(const WChar* url, bool topLevel, void* dispatch) {
  CTabUrlItem* const found =
      chain::Find(head_, [url](const CTabUrlItem* item) { return SameText(item->GetUrl(), url); });
  if (!found) return false;
  if (topLevel && !found->IsTopLevel()) {
    DeleteFirstTopLevel();
    found->SetTopLevel(true);
  }
  found->SetDispatch(dispatch);
  return true;
}

LONG CTabUrlData::InternalGetZone(bool* lessTrustedFrame, int* count) const {
  *count = Count();
  *lessTrustedFrame = false;
  if (!head_) return kZoneUnknown;
  const CTabUrlItem* page = nullptr;
  for (const CTabUrlItem* item : chain::Cells(head_))
    if (item->IsTopLevel()) page = item;
  const LONG highest = GetHighestZone();
  if (!page) return highest;
  *lessTrustedFrame = highest > page->GetZone();
  return page->GetZone();
}

void CTabUrlData::DeleteFirstTopLevel() {
  if (CTabUrlItem* const page = chain::Find(head_, IsTopLevel)) DeleteTabUrlItem(page);
}

int CTabUrlData::Count() const {
  int count = 0;
  for (const CTabUrlItem* item = head_; item; item = item->next) ++count;
  return count;
}

}  // namespace vosmere
