#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// One tag: a name and how many items carry it. Made and freed by CTagStore (tag_store.h).
class VOSMERE_API CTagItem {
 public:
  CTagItem(const CTagItem&) = delete;
  CTagItem& operator=(const CTagItem&) = delete;
  virtual ~CTagItem();

  /// Null clears.
  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  /// Null until set.
  WChar* GetName() const { return name_.get(); }

  /// 1 until set.
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
