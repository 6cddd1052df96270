// How much of a tree is compared and merged.
#pragma once

namespace vosmere {

/// How much of a tree is compared or merged.
enum class TreeParts {
  kLinks,  ///< what the tree owns: everything but the local trees of its collections
  kWithLocalTrees,
};

}  // namespace vosmere
