// Finding the base of a merge.
#include "vosmere/merge/internal/item_matcher.h"
#include "vosmere/merge/internal/tree_outline.h"
#include "vosmere/merge/merge_trees.h"
#include "vosmere/tree/base_node.h"

namespace vosmere {

bool CanHaveStartedFrom(const RNode* base, const RNode* side, TreeParts parts) {
  const TreeOutline before(base, parts), now(side, parts);
  TextNumbers identities;
  std::vector<int> builds = {0};  // by the number of the identity
  for (std::size_t i = 0; i < before.items.size(); ++i)
    if (identities.NumberOf(before.items[i].identity) == builds.size())
      builds.push_back(before.links[i]->item->GetBaseBuild());
  bool isShared = false;
  for (std::size_t i = 0; i < now.items.size(); ++i) {
    const std::uint32_t number = identities.NumberOf(now.items[i].identity);
    if (number == 0 || number >= builds.size()) continue;
    if (builds[number] != now.links[i]->item->GetBaseBuild()) return false;
    isShared = true;
  }
  return isShared;
}

}  // namespace vosmere
