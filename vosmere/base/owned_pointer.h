// A small owning pointer for public headers. The standard header of std::unique_ptr would make up
// half of what a program compiles because of this library.
#pragma once

#include <utility>

namespace vosmere {

/// A deleter that calls `delete`.
struct WithDelete {
  template <class Thing>
  void operator()(Thing* owned) const {
    delete owned;
  }
};

/// A deleter that calls `delete[]`, for arrays.
struct WithArrayDelete {
  template <class Thing>
  void operator()(Thing* owned) const {
    delete[] owned;
  }
};

/// A deleter that calls `Free`.
template <auto Free>
struct FreeWith {
  template <class Thing>
  void operator()(Thing* owned) const {
    Free(owned);
  }
};

/// Owns one object, or nothing. After a move it is empty.
template <class Thing, class Free = WithDelete>
class OwnedPointer {
 public:
  OwnedPointer() = default;
  explicit OwnedPointer(Thing* owned) : owned_(owned) {}
  OwnedPointer(OwnedPointer&& other) noexcept : owned_(other.Detach()) {}
  OwnedPointer& operator=(OwnedPointer&& other) noexcept {
    Assign(other.Detach());
    return *this;
  }
  ~OwnedPointer() { Assign(nullptr); }

  Thing* get() const { return owned_; }
  Thing* operator->() const { return owned_; }
  Thing& operator*() const { return *owned_; }
  explicit operator bool() const { return owned_ != nullptr; }

  /// Gives the object to the caller; this owns nothing then.
  Thing* Detach() { return std::exchange(owned_, nullptr); }
  /// Takes ownership of another object and frees the one before.
  void Assign(Thing* owned) {
    Thing* const before = std::exchange(owned_, owned);
    if (before) Free()(before);
  }

 private:
  Thing* owned_ = nullptr;
};

}  // namespace vosmere
