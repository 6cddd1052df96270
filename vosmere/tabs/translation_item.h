// Commands with names in the user's language.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// A command: its name in the user's language, its text and its identifier. Setters copy their
/// text; when memory runs out, the old text stays. Not thread-safe.
class VOSMERE_API CTranslationItem {
 public:
  CTranslationItem() = default;
  CTranslationItem(const CTranslationItem&) = delete;
  CTranslationItem& operator=(const CTranslationItem&) = delete;
  virtual ~CTranslationItem();

  /// Null makes the field null.
  void SetItem(const WChar* name, const WChar* cmdText) {
    name_.AssignOrNull(name);
    cmdText_.AssignOrNull(cmdText);
  }
  /// Null in a new item. Owned by the item.
  WChar* GetName() const { return name_.get(); }
  WChar* GetCmdText() const { return cmdText_.get(); }

  /// 0 in a new item.
  void SetCmdID(ULONG id) { cmdID_ = id; }
  ULONG GetCmdID() const { return cmdID_; }

 private:
  HeapText name_;
  HeapText cmdText_;
  ULONG cmdID_ = 0;
};

}  // namespace vosmere
