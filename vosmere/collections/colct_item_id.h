// References to items of collections by identity, and chains of them.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// Refers to one item of one collection by their identities, and keeps pointers to the two objects
/// once they are found. Setters copy their text; null makes it null. A returned text is owned by
/// the object and may be null. Not thread-safe.
class VOSMERE_API CColctItemID {
 public:
  /// An object in which everything is null; null when memory runs out. Freed with Delete.
  static CColctItemID* New();
  /// Frees it. Null is ignored.
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

  /// The collection and the item that the identities were resolved to, or null. Not owned.
  void SetRefColctNode(CColctNode* colct) { refColctNode_ = colct; }
  CColctNode* GetRefColctNode() const { return refColctNode_; }
  void SetRefUrlNode(CUrlNode* item) { refUrlNode_ = item; }
  CUrlNode* GetRefUrlNode() const { return refUrlNode_; }

  /// Looks up the collection in `list`: by pointer if `id` already holds one, otherwise the first
  /// with its identity. A null identity matches nothing. Returns whether it was found. If not, both
  /// pointers of `id` become null, except that an empty list changes nothing.
  static bool FindColctNode(RColctItem* list, CColctItemID* id);
  /// Looks up the collection as FindColctNode does, then the item among the top-level web pages of
  /// its local tree: by pointer if `id` already holds one, otherwise the first with its identity.
  /// Returns whether both were found. If only the item is missing, its pointer becomes null.
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

/// One cell of a chain of item references (base/chain.h). Destroying a cell does not free its
/// reference.
struct VOSMERE_API RColctItemID {
  RColctItemID* prev = this;
  RColctItemID* next = nullptr;
  CColctItemID* item;

  /// A cell in no chain; null when memory runs out.
  static RColctItemID* New(CColctItemID* id);
  /// Frees every cell from `head` on, with its reference. Null is ignored.
  static void DeleteList(RColctItemID* head);

  RColctItemID(const RColctItemID&) = delete;
  RColctItemID& operator=(const RColctItemID&) = delete;
  virtual ~RColctItemID();

 protected:
  explicit RColctItemID(CColctItemID* id) : item(id) {}
};

}  // namespace vosmere
