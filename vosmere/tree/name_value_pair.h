#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// One cell of a chain of names and values (base/chain.h). Texts are copied.
class VOSMERE_API CNameValuePair {
 public:
  CNameValuePair* prev = this;
  CNameValuePair* next = nullptr;

  /// A cell of its own without name and value; null when memory runs out.
  static CNameValuePair* New();
  /// Frees one cell. Null is ignored.
  static void Delete(CNameValuePair* pair);
  /// Frees every cell from `head` on. Null is ignored.
  static void DeleteList(CNameValuePair* head);

  CNameValuePair(const CNameValuePair&) = delete;
  CNameValuePair& operator=(const CNameValuePair&) = delete;
  virtual ~CNameValuePair();

  /// Null clears.
  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  void SetValue(const WChar* value) { value_.AssignOrNull(value); }
  /// Null until set.
  WChar* GetName() const { return name_.get(); }
  WChar* GetValue() const { return value_.get(); }

  /// Whether both name and value are set.
  bool IsPair() const { return name_.get() && value_.get(); }

  /// The value of the first cell from `head` on whose name equals `name` without regard to ASCII
  /// case; it stays the cell's. Null for none, for a null name, and for a cell without a value.
  static WChar* FindValue(CNameValuePair* head, const WChar* name);

 protected:
  CNameValuePair() = default;

 private:
  SystemText name_;
  SystemText value_;
};

}  // namespace vosmere
