#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// A command under a name of the user's language: name, command text and command identifier. Texts
/// are copied.
class VOSMERE_API CTranslationItem {
 public:
  CTranslationItem() = default;
  CTranslationItem(const CTranslationItem&) = delete;
  CTranslationItem& operator=(const CTranslationItem&) = delete;
  virtual ~CTranslationItem();

  /// Null clears.
  void SetItem(const WChar* name, const WChar* cmdText) {
    name_.AssignOrNull(name);
    cmdText_.AssignOrNull(cmdText);
  }
  /// Null until set.
  WChar* GetName() const { return name_.get(); }
  WChar* GetCmdText() const { return cmdText_.get(); }

  /// 0 until set.
  void SetCmdID(ULONG id) { cmdID_ = id; }
  ULONG GetCmdID() const { return cmdID_; }

 private:
  HeapText name_;
  HeapText cmdText_;
  ULONG cmdID_ = 0;
};

}  // namespace vosmere
