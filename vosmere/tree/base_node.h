// The base class of all items that the user saves.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"
#include "vosmere/fwd.h"
#include "vosmere/tree/node_stat.h"

namespace vosmere {

/// Base of every saved item: a folder, a web page, a collection.
///
/// Items do not point at each other. An item in a tree is held by one link (tree_link.h), and the
/// two point at each other. Items are created by the `New` of their class and destroyed by `Delete`
/// only. Setters copy their text; a returned text is owned by the item and valid until it is set
/// again. When memory runs out in a setter, the old text stays and LostTexts counts it. Not
/// thread-safe: an item belongs to one thread at a time.
class VOSMERE_API CBaseNode {
 public:
  /// Code units in the longest identity. A longer one is cut.
  static constexpr int kMaxUuidLength = 36;
  /// The value of the synchronisation state that means "checked in".
  static constexpr int kCheckedIn = 2;

  virtual ~CBaseNode();
  CBaseNode(const CBaseNode&) = delete;
  CBaseNode& operator=(const CBaseNode&) = delete;

  /// Destroys an item of any class. Null is ignored. The item's link is not changed: it still
  /// points at the freed item.
  static void Delete(CBaseNode* node);

  /// Intended: null makes the name null, whereas SetDescription makes the description empty.
  /// Callers distinguish an item that was never named from one with an empty name.
  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  /// Empty in a new item; null only after SetName with null.
  WChar* GetName() const { return name_.get(); }

  /// Null is treated as the empty text.
  void SetDescription(const WChar* description) { description_.AssignOrEmpty(description); }
  /// Never null.
  WChar* GetDescription() const { return description_.get(); }

  /// Sets the identity, a UUID as text. Null or the empty text removes it. `uuid` may be the item's
  /// own.
  /// Intended: a text of more than 36 code units is cut to 36 without an error, although the array
  /// and the documents have room for 40: an identity is a UUID and nothing else.
  void SetUUID(const WChar* uuid);
  /// The item's own array; never null, empty if the item has no identity.
  WChar* GetUUID() { return uuid_; }
  const WChar* GetUUID() const { return uuid_; }

  /// The version counter of the stored record, 1 in a new item.
  void SetVersion(int version) { version_ = version; }
  int GetVersion() const { return version_; }

  /// The position among the siblings as documents store it, 1 in a new item. The order in the tree
  /// is that of the links.
  void SetOrder(int order) { order_ = order; }
  int GetOrder() const { return order_; }

  /// The build number of the stored record that the item was based on; 0 for none.
  void SetBaseBuild(int build) { baseBuild_ = build; }
  int GetBaseBuild() const { return baseBuild_; }

  /// The synchronisation state. kCheckedIn, the state of a new item, is the only value with a
  /// meaning.
  void SetCheckedIn(int state) { checkedIn_ = state; }
  /// Whether the state is kCheckedIn. Stores the state itself if `state` is not null.
  bool HasCheckedIn(int* state) const;
  /// The state itself.
  int GetCheckedIn() const { return checkedIn_; }

  /// Marks the item as deleted. It stays in its tree as a tombstone for synchronisation.
  void SetAsDeleted(bool deleted) { deleted_ = deleted; }
  bool IsDeleted() const { return deleted_; }

  /// A word for the owner of the tree; the library does not use it.
  void SetNodeData(ULONG data) { nodeData_ = data; }
  ULONG GetNodeData() const { return nodeData_; }

  /// The item's statistics, which may be changed in place. Never null; owned by the item.
  CNodeStat* GetNodeStat() { return &stat_; }
  const CNodeStat* GetNodeStat() const { return &stat_; }

  /// The link that holds the item, or null. Not owned. RNode::New2 sets it.
  void SetRNode(RNode* link) { link_ = link; }
  RNode* GetRNode() const { return link_; }

 protected:
  CBaseNode();
  /// Copies everything but the link. Throws std::bad_alloc when memory runs out.
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
