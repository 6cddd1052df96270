#include "vosmere/collections/colct_tool.h"

#include <unordered_map>
#include <unordered_set>

#include "vosmere/base/chain.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/collections/colct_node.h"

namespace vosmere {
namespace {

WideView Address(const RColctItem* cell) {
  return WideView(cell->item->GetUrl());
}

struct AddressHash {
  std::size_t operator()(WideView text) const {
    std::size_t hash = 14695981039346656037u;
    for (const WChar unit : text) hash = (hash ^ unit) * 1099511628211u;
    return hash;
  }
};

/// The first cell of a list for each address. Without memory for an index it walks the list.
class AddressIndex {
 public:
  explicit AddressIndex(RColctItem* list) : list_(list) {
    try {
      for (RColctItem* cell : chain::Cells(list)) cells_.emplace(Address(cell), cell);
      complete_ = true;
    } catch (const std::bad_alloc&) {
      cells_.clear();
    }
  }

  RColctItem* Find(WideView address) const {
    if (!complete_)
      return chain::Find(list_, [=](RColctItem* cell) { return Address(cell) == address; });
    const auto found = cells_.find(address);
    return found == cells_.end() ? nullptr : found->second;
  }

 private:
  RColctItem* list_;
  std::unordered_map<WideView, RColctItem*, AddressHash> cells_;
  bool complete_ = false;
};

}  // namespace

CRColctTool::~CRColctTool() = default;

bool CRColctTool::UpdateRColctItemList(RColctItem* newList, RColctItem** oldList,
                                       RColctItem** removedList) {
  if (!*oldList) {
    *removedList = nullptr;
    return false;
  }
  const AddressIndex newByAddress(newList);
  bool lastWasHead = false;
  for (RColctItem* old : chain::Cells(*oldList)) {
    RColctItem* const fresh = newByAddress.Find(Address(old));
    if (!fresh) {
      lastWasHead = chain::Unlink(*oldList, old);
      chain::Append(*removedList, old);
      continue;
    }
    fresh->mark = true;
    fresh->item->SetLocRNodeRoot(old->item->GetLocRNodeRoot());
    old->item->SetLocRNodeRoot(nullptr);
    if (keepOldColctNetData_) {
      int checkedIn = 0;
      old->item->HasCheckedIn(&checkedIn);
      *fresh->item->GetColctNetData() = *old->item->GetColctNetData();
      fresh->item->SetUUID(old->item->GetUUID());
      fresh->item->SetBaseBuild(old->item->GetBaseBuild());
      fresh->item->SetCheckedIn(checkedIn);
    }
  }
  return lastWasHead;
}

bool CRColctTool::DeleteDuplcateColct(RColctItem* list) {
  bool any = false;
  try {
    std::unordered_set<WideView, AddressHash> seen;
    for (RColctItem* cell : chain::Cells(list)) {
      if (seen.insert(Address(cell)).second) continue;
      chain::Unlink(list, cell);
      RColctItem::DeleteList(cell);
      any = true;
    }
  } catch (const std::bad_alloc&) {
    // What is left may hold duplicates; nothing is lost.
  }
  return any;
}

bool CRColctTool::DeleteColctByUrl(RColctItem** list, const WChar* url) {
  if (!url) return false;
  const WideView address(url);
  RColctItem* found = nullptr;  // freed at the end, since the address may belong to one of them
  for (RColctItem* cell : chain::Cells(*list)) {
    if (!(Address(cell) == address)) continue;
    chain::Unlink(*list, cell);
    chain::Append(found, cell);
  }
  const bool any = found != nullptr;
  RColctItem::DeleteList(found);
  return any;
}

}  // namespace vosmere
