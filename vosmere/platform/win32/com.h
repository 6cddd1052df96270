// Casts between `wchar_t`, which Windows uses, and `unsigned short`, which the library uses for the
// same code units; owners for COM interfaces and variants.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <utility>

#include "vosmere/base/types.h"

namespace vosmere::win32 {

/// The text in the type of Windows.
inline wchar_t* Native(WChar* text) {
  return reinterpret_cast<wchar_t*>(text);
}
inline const wchar_t* Native(const WChar* text) {
  return reinterpret_cast<const wchar_t*>(text);
}
/// The text in the type of the library.
inline WChar* Ours(wchar_t* text) {
  return reinterpret_cast<WChar*>(text);
}
inline const WChar* Ours(const wchar_t* text) {
  return reinterpret_cast<const WChar*>(text);
}

/// Owns one reference to a COM interface.
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
  /// For an output parameter; use it only once.
  Interface** out() { return &interface_; }
  /// Gives the reference to the caller.
  Interface* Detach() { return std::exchange(interface_, nullptr); }

 private:
  Interface* interface_ = nullptr;
};

/// A variant that frees its content.
struct OwnedVariant : VARIANT {
  OwnedVariant() { ::VariantInit(this); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() { ::VariantClear(this); }
};

}  // namespace vosmere::win32
