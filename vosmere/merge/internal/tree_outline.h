// A tree as the list of items that can be compared with another.
#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "vosmere/collections/internal/stored_fields.h"
#include "vosmere/merge/internal/field_rules.h"
#include "vosmere/merge/match_items.h"
#include "vosmere/merge/tree_parts.h"

namespace vosmere {

/// Links without an item are left out, with all below them. Items view the texts of the tree.
struct TreeOutline {
  TreeOutline(const RNode* root, TreeParts parts);

  std::vector<OutlineItem> items;
  std::vector<RNode*> links;
};

/// Added to the type of the root of a local tree; the kind of other items is their type.
inline constexpr unsigned kLocalRootKind = 3;

/// Which of the three times the item was given, as against made up.
bool IsTimeSaid(const RNode& link, unsigned timeField);

}  // namespace vosmere
