// TreeObserver is called before and after every change of a tree.
#pragma once

#include "vosmere/base/export.h"

namespace vosmere {

struct RNode;

/// The functions of vosmere/cpp/tree.h and walk.h call it when they add, move, remove or sort items
/// of the tree or set their fields. Changes by RNTool or by an item's own setters are not observed,
/// unless they are made inside Update.
///
/// A tree has at most one observer. It is called on the thread that changes the tree. If it throws
/// std::bad_alloc, the change is not made; it must not throw anything else.
class VOSMERE_API TreeObserver {
 public:
  virtual ~TreeObserver();

  // Called directly before the change.

  /// `tree` will be added to `parent`, before `before` or as the last child.
  virtual void Adding(RNode* parent, RNode* tree, RNode* before) = 0;
  /// `link` will be moved within the tree.
  virtual void Moving(RNode* link, RNode* parent, RNode* before) = 0;
  virtual void Removing(RNode* link) = 0;

  // Called before and after the change. Calls may be nested.

  virtual void Changing(RNode* link) = 0;
  virtual void Changed(RNode* link) = 0;
  virtual void Sorting(RNode* folder) = 0;
  virtual void Sorted(RNode* folder) = 0;

  /// The observer of the tree that contains `link`; null if there is none or `link` is null. Costs
  /// a walk to the root, or almost nothing if no tree is observed.
  static TreeObserver* Of(const RNode* link);
  /// Sets the observer of the tree with this root; null removes it. The observer must outlive this,
  /// and it must be removed before the root is freed. Throws std::bad_alloc.
  static void Observe(const RNode* root, TreeObserver* observer);

 protected:
  /// Removes this observer from all trees.
  void StopObserving();
};

}  // namespace vosmere
