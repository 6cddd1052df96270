#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// A loose record of name, description and address. Texts are copied; null clears, also the
/// description, which starts as the empty text.
class VOSMERE_API CProperties {
 public:
  CProperties() : description_(HeapTextStorage::Empty()) {}
  CProperties(const CProperties&) = delete;
  CProperties& operator=(const CProperties&) = delete;
  virtual ~CProperties();

  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  WChar* GetName() const { return name_.get(); }
  void SetDescription(const WChar* description) { description_.AssignOrNull(description); }
  WChar* GetDescription() const { return description_.get(); }
  void SetUrl(const WChar* url) { url_.AssignOrNull(url); }
  WChar* GetUrl() const { return url_.get(); }

  /// True when there is neither name nor address.
  /// Intended: with one of them, the record counts as empty exactly when its description holds
  /// text; a name with an empty description is not empty. Callers rely on it.
  bool IsEmpty() const;

 private:
  HeapText name_;
  HeapText description_;
  HeapText url_;
  HeapText extra_;  // without accessors; part of the record and of IsEmpty
};

}  // namespace vosmere
