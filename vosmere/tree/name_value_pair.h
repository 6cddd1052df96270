// Chains of name/value pairs.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// One cell of a chain of name/value pairs (base/chain.h). Setters copy their text; when memory
/// runs out, the old text stays. Not thread-safe.
class VOSMERE_API CNameValuePair {
 public:
  CNameValuePair* prev = this;
  CNameValuePair* next = nullptr;

  /// A cell without name and value, in no chain; null when memory runs out. The caller owns it.
  static CNameValuePair* New();
  /// Frees one cell, without unlinking it. Null is ignored.
  static void Delete(CNameValuePair* pair);
  /// Frees every cell from `head` on. Null is ignored.
  static void DeleteList(CNameValuePair* head);

  CNameValuePair(const CNameValuePair&) = delete;
  CNameValuePair& operator=(const CNameValuePair&) = delete;
  virtual ~CNameValuePair();

  /// Null makes it null.
  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  void SetValue(const WChar* value) { value_.AssignOrNull(value); }
  /// Null in a new cell. Owned by the cell.
  WChar* GetName() const { return name_.get(); }
  WChar* GetValue() const { return value_.get(); }

  /// Whether both name and value are set, that is, not null.
  bool IsPair() const { return name_.get() && value_.get(); }

  /// The value of the first cell from `head` on whose name equals `name`, case-insensitive (ASCII).
  /// It stays owned by the cell. Null when there is no such cell, when its value is null, and for a
  /// null name.
  static WChar* FindValue(CNameValuePair* head, const WChar* name);

 protected:
  CNameValuePair() = default;

 private:
  SystemText name_;
  SystemText value_;
};

}  // namespace vosmere
