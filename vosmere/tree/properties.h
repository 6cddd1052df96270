// A record of name, description and address.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// A record of name, description and address, independent of any item. Setters copy their text;
/// null makes the field null, also the description, which is empty in a new record. A returned text
/// is owned by the record. Not thread-safe.
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

  /// True when name and address are both null.
  /// Intended: otherwise true exactly when the description is not empty, so a record with a name
  /// and an empty description is not empty. Callers rely on it.
  bool IsEmpty() const;

 private:
  HeapText name_;
  HeapText description_;
  HeapText url_;
  HeapText extra_;  // has no accessors, but is part of the record and of IsEmpty
};

}  // namespace vosmere
