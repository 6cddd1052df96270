// Collections: items of the tree that hold a local tree of their own.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/collections/colct_net_data.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {

/// The kind of a collection. Programs may use further values.
enum tagCOLCTTYPE : LONG {
  CT_DEFAULT = 1,
};

/// A collection: a subscribed source of items. Its address (GetUrl) is that of the source. Its
/// items are not children of its link; they are in a separate tree, the local tree.
class VOSMERE_API CColctNode : public CUrlNode {
 public:
  /// A new collection without a local tree; null when memory runs out. Freed with CBaseNode::Delete
  /// or DeleteWithLocalTree.
  static CColctNode* New();
  /// A copy with network settings of its own; null when memory runs out. The copy points to the
  /// same local tree as the source, so at most one of the two may be freed with
  /// DeleteWithLocalTree.
  static CColctNode* New(CColctNode* source);

  ~CColctNode() override;

  /// The root link of the local tree, or null. Its children are the items of the collection (type
  /// NT_URL) and folders. Not owned: the program that built the tree frees it.
  void SetLocRNodeRoot(RNode* root) { locRNodeRoot_ = root; }
  RNode* GetLocRNodeRoot() const { return locRNodeRoot_; }

  void SetColctType(tagCOLCTTYPE type) { colctType_ = type; }
  tagCOLCTTYPE GetColctType() const { return colctType_; }

  /// Whether items have arrived that the user has not seen.
  void SetHasNewData(bool hasNewData) { hasNewData_ = hasNewData; }
  bool HasNewData() const { return hasNewData_; }

  /// The network settings, which may be changed in place. Never null; owned by the collection.
  CColctNetData* GetColctNetData() { return colctNetData_.get(); }
  const CColctNetData* GetColctNetData() const { return colctNetData_.get(); }

  /// The progress of loading, -1 to 2; 0 in a new collection. Other values are ignored.
  void SetLoadingState(int state);
  int GetLoadingState() const { return loadingState_; }

  /// The time of the last modification from the statistics, in seconds since 1970.
  LONG GetLastModified() const;
  /// Whether the network settings say that the collection is synchronised.
  bool IsNetSynced() const { return colctNetData_->IsSynced(); }

  /// Copies properties from `fileNode`, which was read from the collection's own file. The name and
  /// the description are copied unless they are null, the identity if it is longer than one code
  /// unit, the checked-in state and the base build always.
  void SetPropertiesFromColctFileNode(CColctNode* fileNode);

 protected:
  CColctNode();
  explicit CColctNode(const CColctNode* source);

 private:
  tagCOLCTTYPE colctType_ = CT_DEFAULT;
  RNode* locRNodeRoot_ = nullptr;
  bool hasNewData_ = false;
  OwnedPointer<CColctNetData> colctNetData_;
  LONG loadingState_ = 0;
};

/// Frees a collection together with its local tree, for callers that own both; the collection
/// itself does not own the tree. Null is ignored.
VOSMERE_API void DeleteWithLocalTree(CColctNode* colct);

}  // namespace vosmere
