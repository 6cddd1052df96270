// The items of three trees side by side, from which merge makes a fourth.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vosmere/merge/internal/tree_outline.h"

namespace vosmere {

enum Side : unsigned { kBase, kOurs, kTheirs };

/// In place of the number of an item that is not there.
inline constexpr std::uint32_t kNobody = UINT32_MAX;

/// An item of the merged tree, or one that is left out of it.
struct MergeItem {
  RNode* links[3] = {};  ///< by Side; null where it is not there
  std::uint32_t parents[3] = {kNobody, kNobody, kNobody};
  std::uint32_t parent = kNobody;  ///< in the merged tree
  bool isLocal = false;            ///< the root of a local tree
  bool stays = false;
  /// Whether a side has added, changed or moved it, or something below it.
  bool isTouched[3] = {};

  bool IsIn(Side side) const { return links[side]; }
  bool IsInBoth() const { return links[kOurs] && links[kTheirs]; }
  /// Any of its links, that of ours if there is one.
  RNode* Link() const;
};

/// A disagreement of the two sides.
struct FoundConflict {
  std::uint32_t item;
  const char* what;
  std::string ours, theirs;
  bool tookTheirs;
};

class MergeTable {
 public:
  /// `base` may be null.
  MergeTable(const RNode* base, const RNode* ours, const RNode* theirs, TreeParts parts);

  std::vector<MergeItem> items;           ///< the root is the first
  std::vector<std::uint32_t> inOrder[3];  ///< the items of each side in its order
  std::vector<FoundConflict> conflicts;

 private:
  void AddSide(Side side, const TreeOutline& outline);
};

/// By the version, then by the time of the last change if both were given one.
bool IsNewer(const RNode& link, const RNode& than);

}  // namespace vosmere
