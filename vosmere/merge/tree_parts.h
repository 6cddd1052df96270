// How much of a tree is compared and merged.
#pragma once

namespace vosmere {

enum class TreeParts {
  kLinks,  ///< what the tree owns: everything but the local trees of its collections
  kWithLocalTrees,
};

}  // namespace vosmere
