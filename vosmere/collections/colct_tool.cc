// Merges lists of collections, in linear time with an index of addresses.
#include "vosmere/collections/colct_tool.h"

#include <unordered_map>

#include "vosmere/base/chain.h"
#include "vosmere/base/internal/no_memory.h"
#include "vosmere/base/internal/text_hash.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/collections/colct_node.h"

namespace vosmere {
namespace {

WideView Address(const RColctItem* cell) {
  return WideView(cell->item->GetUrl());
}

/// FNV-1a over the code units.
struct AddressHash {
  std::size_t operator()(WideView text) const {
    std::size_t hash = kTextHashStart;
    for (const WChar unit : text) hash = TextHashWith(hash, unit);
    return hash;
  }
};

/// Finds the first cell of a list with a given address. The cells must be added in list order. When
/// memory for the index runs out, the list is searched instead, so that the result is the same.
class AddressIndex {
 public:
  explicit AddressIndex(RColctItem* list) : list_(list) {}

  /// Adds a cell. Returns the first cell with its address, which may be the cell itself.
  RColctItem* Add(RColctItem* cell) {
    RColctItem* first = nullptr;
    if (indexed_)
      first = UnlessNoMemory(first,
                             [&] { return cells_.try_emplace(Address(cell), cell).first->second; });
    indexed_ = first;
    return first ? first : Find(Address(cell));
  }

  RColctItem* Find(WideView address) const {
    if (!indexed_)
      return chain::Find(list_, [=](RColctItem* cell) { return Address(cell) == address; });
    const auto found = cells_.find(address);
    return found == cells_.end() ? nullptr : found->second;
  }

 private:
  RColctItem* list_;
  std::unordered_map<WideView, RColctItem*, AddressHash> cells_;
  bool indexed_ = true;
};

}  // namespace

CRColctTool::~CRColctTool() = default;

bool CRColctTool::UpdateRColctItemList(RColctItem* newList, RColctItem** oldList,
                                       RColctItem** removedList) {
  if (!*oldList) {
    *removedList = nullptr;
    return false;
  }
  AddressIndex newByAddress(newList);
  for (RColctItem* fresh : chain::Cells(newList)) newByAddress.Add(fresh);
  bool lastWasHead = false;
  for (RColctItem* old : chain::Cells(*oldList)) {
    RColctItem* const fresh = newByAddress.Find(Address(old));
    if (!fresh) {
      lastWasHead = chain::Unlink(*oldList, old);
      chain::Append(*removedList, old);
      continue;
    }
    fresh->mark = true;
    // Only one of the two collections may keep the tree, or it would be freed twice.
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
  AddressIndex byAddress(list);
  bool any = false;
  for (RColctItem* cell : chain::Cells(list)) {
    // The index only refers to the addresses of first cells, so the others may be freed.
    if (byAddress.Add(cell) == cell) continue;
    chain::Unlink(list, cell);
    RColctItem::DeleteList(cell);
    any = true;
  }
  return any;
}

bool CRColctTool::DeleteColctByUrl(RColctItem** list, const WChar* url) {
  if (!url) return false;
  const WideView address(url);
  RColctItem* found = nullptr;  // freed last, because `url` may belong to one of the collections
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
