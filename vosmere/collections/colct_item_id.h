// The name of an item of a collection by the identities of both, and chains of such names.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// Names one item of one collection by their identities, and keeps what the names resolve to.
/// Texts are copied; null clears.
class VOSMERE_API CColctItemID {
 public:
  /// Null when memory runs out.
  static CColctItemID* New();
  /// Null is ignored.
  static void Delete(CColctItemID* id);

  CColctItemID(const CColctItemID&) = delete;
  CColctItemID& operator=(const CColctItemID&) = delete;
  virtual ~CColctItemID();

  /// Identity of the collection.
  void SetColctID(const WChar* id) { colctID_.AssignOrNull(id); }
  WChar* GetColctID() const { return colctID_.get(); }
  /// Identity of the item.
  void SetItemID(const WChar* id) { itemID_.AssignOrNull(id); }
  WChar* GetItemID() const { return itemID_.get(); }
  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  WChar* GetName() const { return name_.get(); }

  /// What the names resolved to, or null. Not owned.
  void SetRefColctNode(CColctNode* colct) { refColctNode_ = colct; }
  CColctNode* GetRefColctNode() const { return refColctNode_; }
  void SetRefUrlNode(CUrlNode* item) { refUrlNode_ = item; }
  CUrlNode* GetRefUrlNode() const { return refUrlNode_; }

  /// Resolves the collection in `list`: the very one that `id` holds already, else the first with
  /// its identity, which null never is. True when it is there. When it is not, both references of
  /// `id` are cleared; an empty list changes nothing.
  static bool FindColctNode(RColctItem* list, CColctItemID* id);
  /// Resolves the collection, then the item among the top-level web pages of its local tree: the
  /// very one that `id` holds already, else the first with its identity. True when both are there;
  /// what is not is cleared.
  static bool FindColctUrlNode(RColctItem* list, CColctItemID* id);

 protected:
  CColctItemID() = default;

 private:
  SystemText colctID_;
  SystemText itemID_;
  CColctNode* refColctNode_ = nullptr;
  CUrlNode* refUrlNode_ = nullptr;
  SystemText name_;
};

/// One cell of a chain of item identities (base/chain.h). Destroying it frees nothing else.
struct VOSMERE_API RColctItemID {
  RColctItemID* prev = this;
  RColctItemID* next = nullptr;
  CColctItemID* item;

  /// Null when memory runs out.
  static RColctItemID* New(CColctItemID* id);
  /// Frees every cell from `head` on with its identity. Null is ignored.
  static void DeleteList(RColctItemID* head);

  RColctItemID(const RColctItemID&) = delete;
  RColctItemID& operator=(const RColctItemID&) = delete;
  virtual ~RColctItemID();

 protected:
  explicit RColctItemID(CColctItemID* id) : item(id) {}
};

}  // namespace vosmere
