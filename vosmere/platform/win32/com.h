// Windows' wide characters are `wchar_t`, ours are `unsigned short`: the same bits under two types.
// The casts between them live here; the smallest owner of a COM interface does too.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <utility>

#include "vosmere/base/types.h"

namespace vosmere::win32 {

inline wchar_t* Native(WChar* text) {
  return reinterpret_cast<wchar_t*>(text);
}
inline const wchar_t* Native(const WChar* text) {
  return reinterpret_cast<const wchar_t*>(text);
}
inline WChar* Ours(wchar_t* text) {
  return reinterpret_cast<WChar*>(text);
}
inline const WChar* Ours(const wchar_t* text) {
  return reinterpret_cast<const WChar*>(text);
}

/// Holds one reference.
template <class Interface>
class Counted {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;
  ~Counted() {
    if (interface_) interface_->Release();
  }

  Interface* get() const { return interface_; }
  Interface* operator->() const { return interface_; }
  explicit operator bool() const { return interface_ != nullptr; }
  /// For out parameters, once.
  Interface** out() { return &interface_; }
  Interface* Detach() { return std::exchange(interface_, nullptr); }

 private:
  Interface* interface_ = nullptr;
};

/// Owns a variant and what it holds.
struct OwnedVariant : VARIANT {
  OwnedVariant() { ::VariantInit(this); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() { ::VariantClear(this); }
};

}  // namespace vosmere::win32
