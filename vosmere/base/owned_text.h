// OwnedText: owns one wide text, in heap memory or as a system string. Its assignment operations
// are named after what they do with null and with texts that are too long, so that a setter is one
// line and its rule can be read there.
#pragma once

#include <cstddef>
#include <new>
#include <utility>

#include "vosmere/base/export.h"
#include "vosmere/base/system_string.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// Texts as arrays in the library's heap. All empty texts share one constant, since most names and
/// descriptions are empty; so emptying a text cannot run out of memory. `Copy` returns null when
/// memory runs out. The functions are compiled into the library, not into the program, because
/// setters are inline: a text that was allocated in the program is then freed by the library's heap
/// as well.
struct VOSMERE_API HeapTextStorage {
  static WChar* Copy(WideView text);
  static void Free(WChar* text);
  static WChar* Empty();
};

/// Texts as system strings (`BSTR`). `Copy` returns null when memory runs out.
struct SystemTextStorage {
  static WChar* Copy(WideView text) {
    static const WChar empty[1] = {0};
    return SysAllocStringLen(text.data ? text.data : empty, text.size);
  }
  static void Free(WChar* text) { SysFreeString(text); }
};

/// How many texts and results the calling thread has lost because memory ran out: an assignment
/// kept the old text, or something was cut short or left out (a copy, an entry of a list, a result
/// of the system). These calls do not fail visibly, so a caller that must not lose data compares
/// the count before and after. It only ever grows.
VOSMERE_API unsigned long LostTexts();

/// How many times a setter of the calling thread has cut or refused a text because it was too long.
/// Only the headers of such setters say so; a caller that must know compares the count before and
/// after.
VOSMERE_API unsigned long CutTexts();

namespace detail {
/// Adds 1 to LostTexts().
VOSMERE_API void CountLostText();
/// Adds 1 to CutTexts().
VOSMERE_API void CountCutText();
/// Throws std::bad_alloc. A function of the library, so that programs built without exceptions can
/// include this header.
[[noreturn]] VOSMERE_API void ThrowNoMemory();
}  // namespace detail

/// Owns one null-terminated text, or null. When memory runs out in an assignment, the old text
/// stays and LostTexts() counts it. The text may be assigned from itself. Not thread-safe.
template <class Storage>
class OwnedText {
 public:
  OwnedText() = default;
  /// A copy of `text`; null stays null. Throws std::bad_alloc when memory runs out.
  explicit OwnedText(const WChar* text) {
    if (text && !(text_ = Storage::Copy(WideView(text)))) detail::ThrowNoMemory();
  }
  OwnedText(OwnedText&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  OwnedText& operator=(OwnedText&& other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  OwnedText(const OwnedText&) = delete;
  OwnedText& operator=(const OwnedText&) = delete;
  ~OwnedText() { Storage::Free(text_); }

  /// Still owned; valid until the next assignment.
  WChar* get() const { return text_; }
  /// Lets callers read a record's OwnedText member as the WChar* that it owns.
  operator WChar*() const { return text_; }

  /// Gives the text to the caller, who frees it with `Storage::Free`; this object holds null then.
  WChar* Detach() { return std::exchange(text_, nullptr); }

  /// Assigns a copy; null makes it null.
  void AssignOrNull(const WChar* text) {
    if (text)
      Assign(WideView(text));
    else
      Clear();
  }

  /// Assigns a copy; null is treated as the empty text.
  void AssignOrEmpty(const WChar* text) { Assign(WideView(text)); }

  /// Assigns a copy of a text of fewer than `limit` code units. A longer one is ignored and the old
  /// text stays; null makes it null.
  void AssignIfShorter(const WChar* text, std::size_t limit) {
    const WideView view(text);
    if (!text)
      Clear();
    else if (view.size < limit)
      Assign(view);
    else
      detail::CountCutText();
  }

  /// Assigns a copy of a text of fewer than `limit` code units. A longer one and null make it null.
  void AssignOrClear(const WChar* text, std::size_t limit) {
    const WideView view(text);
    if (text && view.size < limit)
      Assign(view);
    else
      Clear();
    if (view.size >= limit) detail::CountCutText();
  }

 private:
  // Copies before it frees, because the new text may be the old one or a part of it.
  void Assign(WideView text) {
    if (WChar* const copy = Storage::Copy(text)) {
      Storage::Free(text_);
      text_ = copy;
    } else {
      detail::CountLostText();
    }
  }
  void Clear() {
    Storage::Free(text_);
    text_ = nullptr;
  }

  WChar* text_ = nullptr;
};

using HeapText = OwnedText<HeapTextStorage>;
using SystemText = OwnedText<SystemTextStorage>;

}  // namespace vosmere
