// A collection as an item of a tree.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/collections/colct_net_data.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {

/// Kind of collection. Documents and modules may use further values.
enum tagCOLCTTYPE : LONG {
  CT_DEFAULT = 1,
};

/// A collection: a subscribed source of items beside folders and web pages. Its address is its
/// source. Its own items are not children of its link; they hang under a local tree of their own.
class VOSMERE_API CColctNode : public CUrlNode {
 public:
  /// A new collection with a network side; null when memory runs out.
  static CColctNode* New();
  /// A copy with a network side of its own; null when memory runs out. The copy names the same
  /// local tree as the source.
  static CColctNode* New(CColctNode* source);

  ~CColctNode() override;

  /// Root link of the local tree, whose children (type NT_URL) are the collection's items; may be
  /// null. Not owned: whoever built the tree frees it.
  void SetLocRNodeRoot(RNode* root) { locRNodeRoot_ = root; }
  RNode* GetLocRNodeRoot() const { return locRNodeRoot_; }

  void SetColctType(tagCOLCTTYPE type) { colctType_ = type; }
  tagCOLCTTYPE GetColctType() const { return colctType_; }

  /// Items arrived since the user last looked.
  void SetHasNewData(bool hasNewData) { hasNewData_ = hasNewData; }
  bool HasNewData() const { return hasNewData_; }

  /// Owned by the collection, never null.
  CColctNetData* GetColctNetData() { return colctNetData_.get(); }
  const CColctNetData* GetColctNetData() const { return colctNetData_.get(); }

  /// Progress of loading, -1 to 2; other values are ignored.
  void SetLoadingState(int state);
  int GetLoadingState() const { return loadingState_; }

  /// The modified time of the statistics.
  LONG GetLastModified() const;
  bool IsNetSynced() const { return colctNetData_->IsSynced(); }

  /// Takes what the collection's own file says: name and description where they are not null, the
  /// identity where it is longer than one unit, checked-in state and base build always.
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

/// Frees a collection with its local tree, which a collection does not own: for who owns both. Null
/// is ignored.
VOSMERE_API void DeleteWithLocalTree(CColctNode* colct);

}  // namespace vosmere
