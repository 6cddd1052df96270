// A hook that sees the changes to a tree.
#pragma once

#include "vosmere/base/export.h"

namespace vosmere {

struct RNode;

/// Sees the changes that the layer for C++ programs makes to one tree (vosmere/cpp/tree.h): adding,
/// moving, removing, sorting, and fields that are set there. What is changed in another way, by
/// RNTool or by an item's own setters, it does not see, unless that is done within Update.
///
/// A tree has at most one observer, which is asked on the thread that changes the tree. Nothing
/// here throws but std::bad_alloc, and then the change is not made.
class VOSMERE_API TreeObserver {
 public:
  virtual ~TreeObserver();

  // Right before the change, which then happens.

  /// `tree` comes into `parent`, before `before` or as the last.
  virtual void Adding(RNode* parent, RNode* tree, RNode* before) = 0;
  /// Within the tree.
  virtual void Moving(RNode* link, RNode* parent, RNode* before) = 0;
  virtual void Removing(RNode* link) = 0;

  // Before and after it. Changes may stand within each other.

  virtual void Changing(RNode* link) = 0;
  virtual void Changed(RNode* link) = 0;
  virtual void Sorting(RNode* folder) = 0;
  virtual void Sorted(RNode* folder) = 0;

  /// The observer of the tree that a link stands in; null for none and for null. Where nothing is
  /// observed, it costs a look at one number, else a walk to the root.
  static TreeObserver* Of(const RNode* link);
  /// Makes it the observer of everything below `root`; null ends that. Throws std::bad_alloc.
  static void Observe(const RNode* root, TreeObserver* observer);
};

}  // namespace vosmere
