#include "vosmere/merge/merge_trees.h"

#include <new>
#include <utility>

#include "vosmere/base/owned_text.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/merge/internal/item_matcher.h"
#include "vosmere/merge/internal/merge_order.h"
#include "vosmere/merge/internal/merge_places.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere {
namespace {

/// Makes the links of the merged tree, and frees them if it does not come to an end.
class TreeMaker {
 public:
  TreeMaker(MergeTable& table, FieldMerge& fields)
      : table_(table), fields_(fields), made_(table.items.size()) {}
  TreeMaker(const TreeMaker&) = delete;
  TreeMaker& operator=(const TreeMaker&) = delete;
  ~TreeMaker() {
    for (RNode* const link : made_)
      if (link) DeleteLink(link);
  }

  void Make() {
    const std::vector<std::vector<std::uint32_t>> order = DecideOrder(table_);
    const unsigned long lost = LostTexts();
    std::vector<std::uint32_t> left = {0};
    while (!left.empty()) {
      const std::uint32_t number = left.back();
      left.pop_back();
      MakeOne(number);
      left.insert(left.end(), order[number].rbegin(), order[number].rend());
    }
    fields_.FinishReferences(made_);
    if (LostTexts() != lost) throw std::bad_alloc();
  }
  void Report(MergeConflictReport report, void* to) const {
    for (const FoundConflict& conflict : table_.conflicts) {
      const MergeItem& item = table_.items[conflict.item];
      report(to, {made_[conflict.item], item.links[kOurs], item.links[kTheirs], conflict.what,
                  conflict.ours.c_str(), conflict.theirs.c_str(), conflict.tookTheirs});
    }
  }
  RNode* Release() {
    RNode* const root = made_[0];
    made_.clear();
    return root;
  }

 private:
  void MakeOne(std::uint32_t number) {
    const MergeItem& item = table_.items[number];
    RNode* const link = made_[number] =
        NewLink(static_cast<std::uint64_t>(item.Link()->type), true);
    fields_.Fill(number, link);
    KeepIdentityUnique(*link->item);
    RNode* const parent = item.parent == kNobody ? nullptr : made_[item.parent];
    if (parent && item.isLocal)
      static_cast<CColctNode*>(parent->item)->SetLocRNodeRoot(link);
    else if (parent)
      RNTool::InsertAsChild(parent, link);
  }
  void KeepIdentityUnique(CBaseNode& item) {
    const auto [at, end] = std::pair(item.GetUUID(), item.GetUUID() + WideLength(item.GetUUID()));
    const std::string_view bytes(reinterpret_cast<const char*>(at),
                                 static_cast<std::size_t>(end - at) * sizeof(WChar));
    const std::uint32_t known = identities_.NumberOf(bytes);
    if (known > count_)
      count_ = known;
    else
      item.SetUUID(nullptr);
  }

  MergeTable& table_;
  FieldMerge& fields_;
  std::vector<RNode*> made_;
  TextNumbers identities_;
  std::uint32_t count_ = 0;
};

bool HasRoot(const RNode* tree) {
  return tree && tree->item;
}

}  // namespace

RNode* MergeTrees(const RNode* base, const RNode* ours, const RNode* theirs, TreeParts parts,
                  MergeConflictReport report, void* to) {
  if (!HasRoot(ours)) std::swap(ours, theirs);
  if (!HasRoot(ours)) return nullptr;
  if (!HasRoot(theirs)) base = theirs = ours;
  if (ours->type != theirs->type) return nullptr;
  if (!HasRoot(base) || base->type != ours->type) base = nullptr;
  MergeTable table(base, ours, theirs, parts);
  FieldMerge fields(table);
  DecidePlaces(table, fields);
  TreeMaker maker(table, fields);
  maker.Make();
  if (report) maker.Report(report, to);
  return maker.Release();
}

}  // namespace vosmere
