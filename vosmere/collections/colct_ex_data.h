// Extra data attached to an item of a collection, and chains of it.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// Extra data attached to an item of a collection. Setters copy their text; null makes it null. A
/// returned text is owned by the object and may be null. Not thread-safe.
class VOSMERE_API CColctExData {
 public:
  /// An object in which everything is null; null when memory runs out. Freed with Delete.
  static CColctExData* New();
  /// Frees it. Null is ignored.
  static void Delete(CColctExData* data);

  CColctExData(const CColctExData&) = delete;
  CColctExData& operator=(const CColctExData&) = delete;
  virtual ~CColctExData();

  /// Address of the collection's data.
  void SetColctUrl(const WChar* url) { colctUrl_.AssignOrNull(url); }
  WChar* GetColctUrl() const { return colctUrl_.get(); }
  /// Identity of the item.
  void SetItemID(const WChar* id) { itemID_.AssignOrNull(id); }
  WChar* GetItemID() const { return itemID_.get(); }

  /// The collection itself, or null. Not owned.
  void StoreColctNodePointer(CColctNode* colct) { storedColctNode_ = colct; }
  CColctNode* GetStoredColctNode() const { return storedColctNode_; }

 protected:
  CColctExData() = default;

 private:
  SystemText colctUrl_;
  SystemText itemID_;
  CColctNode* storedColctNode_ = nullptr;
};

/// One cell of a chain of extra data (base/chain.h). Destroying a cell does not free its data.
struct VOSMERE_API RColctExData {
  RColctExData* prev = this;
  RColctExData* next = nullptr;
  CColctExData* item;

  /// A cell in no chain; null when memory runs out.
  static RColctExData* New(CColctExData* data);
  /// Frees every cell from `head` on, with its data. Null is ignored.
  static void DeleteList(RColctExData* head);

  RColctExData(const RColctExData&) = delete;
  RColctExData& operator=(const RColctExData&) = delete;
  virtual ~RColctExData();

 protected:
  explicit RColctExData(CColctExData* data) : item(data) {}
};

}  // namespace vosmere
