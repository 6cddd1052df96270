#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"
#include "vosmere/fwd.h"
#include "vosmere/tree/node_stat.h"

namespace vosmere {

/// Base of every saved item: a folder, a web page, a collection.
///
/// Items do not point at each other; an item that stands in a tree is held by one link
/// (tree_link.h), and the two point at each other. Items are made by their class's `New` and
/// destroyed by `Delete`, in no other way. Texts given to a setter are copied; texts handed out
/// belong to the item and live until they are set again. An item belongs to one thread at a time.
///
/// When memory runs out in a setter, the old text stays.
class VOSMERE_API CBaseNode {
 public:
  /// Units of the longest identity; longer ones are cut.
  static constexpr int kMaxUuidLength = 36;
  /// The synchronisation state "checked in".
  static constexpr int kCheckedIn = 2;

  virtual ~CBaseNode();
  CBaseNode(const CBaseNode&) = delete;
  CBaseNode& operator=(const CBaseNode&) = delete;

  /// Destroys an item of any class. Null is ignored. The item's link is not touched.
  static void Delete(CBaseNode* node);

  /// Intended: null leaves the name null, where SetDescription makes it empty. Callers tell "never
  /// named" from "named with nothing".
  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  /// Null only after SetName with null.
  WChar* GetName() const { return name_.get(); }

  /// Null stands for the empty text.
  void SetDescription(const WChar* description) { description_.AssignOrEmpty(description); }
  /// Never null.
  WChar* GetDescription() const { return description_.get(); }

  /// The item's identity: a UUID as text. Null or empty means none.
  /// Intended: what is longer than 36 units is cut to 36 without a word, though the array and the
  /// documents have room for 40; an identity is a UUID and nothing else.
  void SetUUID(const WChar* uuid);
  /// The item's own array, never null, empty when the item has no identity.
  WChar* GetUUID() { return uuid_; }
  const WChar* GetUUID() const { return uuid_; }

  /// Version counter of the stored record.
  void SetVersion(int version) { version_ = version; }
  int GetVersion() const { return version_; }

  /// Position among the siblings as documents store it.
  void SetOrder(int order) { order_ = order; }
  int GetOrder() const { return order_; }

  /// Build number of the stored record that the item was based on.
  void SetBaseBuild(int build) { baseBuild_ = build; }
  int GetBaseBuild() const { return baseBuild_; }

  /// Synchronisation state; kCheckedIn is the only value with a meaning.
  void SetCheckedIn(int state) { checkedIn_ = state; }
  /// True exactly when the state is kCheckedIn; stores the raw state when `state` is not null.
  bool HasCheckedIn(int* state) const;

  /// A deleted item stays in its tree: a tombstone for synchronisation.
  void SetAsDeleted(bool deleted) { deleted_ = deleted; }
  bool IsDeleted() const { return deleted_; }

  /// One word for the owner of the tree; the library never looks at it.
  void SetNodeData(ULONG data) { nodeData_ = data; }
  ULONG GetNodeData() const { return nodeData_; }

  /// The item's own statistics, to be changed in place. Never null.
  CNodeStat* GetNodeStat() { return &stat_; }
  const CNodeStat* GetNodeStat() const { return &stat_; }

  /// The link that holds the item, or null. Not owned.
  void SetRNode(RNode* link) { link_ = link; }
  RNode* GetRNode() const { return link_; }

 protected:
  CBaseNode();
  /// Copies everything but the link. Throws std::bad_alloc.
  explicit CBaseNode(const CBaseNode* source);

 private:
  RNode* link_ = nullptr;
  HeapText name_;
  HeapText description_;
  CNodeStat stat_;
  WChar uuid_[kMaxUuidLength + 5] = {};
  LONG version_ = 1;
  LONG order_ = 1;
  LONG checkedIn_ = kCheckedIn;
  LONG baseBuild_ = 0;
  bool deleted_ = false;
  ULONG nodeData_ = 0;
};

}  // namespace vosmere
