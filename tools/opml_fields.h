// The fields of the items of a collection tree, in one table: what scripts are shown, and what a
// saved tree is compared by.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/findings.h"
#include "vosmere/nodes/tree_link.h"

namespace vosmere::tool {

using Json = nlohmann::ordered_json;

/// The item of a folder or collection, without what is below it. Addresses are written as documents
/// write them, with slashes.
Json ItemFields(const RNode* link);

/// Whether two trees have items of the same kinds in the same places.
bool SameShape(RNode* a, RNode* b);

/// Reports the fields of `saved` that differ in `back`, the same tree after a save. `named`, of the
/// same shape, is the tree that people know the items by.
void CompareTrees(RNode* saved, RNode* back, RNode* named, Findings& findings);

/// Where an item stands in its tree.
std::string PlaceOf(const RNode* link);

}  // namespace vosmere::tool
