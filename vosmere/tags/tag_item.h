// Tags.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// A tag: its name and the number of items that have it. Created and freed by CTagStore
/// (tag_store.h). Not thread-safe.
class VOSMERE_API CTagItem {
 public:
  CTagItem(const CTagItem&) = delete;
  CTagItem& operator=(const CTagItem&) = delete;
  virtual ~CTagItem();

  /// Null makes the name null.
  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  /// Null in a new tag. Owned by the tag.
  WChar* GetName() const { return name_.get(); }

  /// The number of items with this tag; 1 in a new tag. Any value is accepted.
  void SetCount(int count) { count_ = count; }
  int GetCount() const { return count_; }

 protected:
  friend class CTagStore;
  CTagItem() = default;

 private:
  SystemText name_;
  LONG count_ = 1;
};

}  // namespace vosmere
