// Owned wide texts. The verbs name what a setter does with null and with over-long text, so that a
// setter is one line and its rule can be read off it.
#pragma once

#include <cstddef>
#include <new>
#include <utility>

#include "vosmere/base/export.h"
#include "vosmere/base/system_string.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// Texts in plain heap memory. All empty texts share one constant: most names and descriptions are
/// empty, and giving one up never needs memory. Setters are inline, so the constant and the two
/// verbs have one home in the library: a text made in the program may be freed in here.
struct VOSMERE_API HeapTextStorage {
  static WChar* Copy(WideView text);
  static void Free(WChar* text);
  static WChar* Empty();
};

/// Texts as system strings (`BSTR`).
struct SystemTextStorage {
  static WChar* Copy(WideView text) {
    static const WChar empty[1] = {0};
    return SysAllocStringLen(text.data ? text.data : empty, text.size);
  }
  static void Free(WChar* text) { SysFreeString(text); }
};

/// How often the calling thread has gone without something for want of memory: an assignment kept
/// its old text or was cut short, a copy, an entry or an answer of the system was left out. Such
/// calls fail silently; who must not lose anything compares before and after.
VOSMERE_API unsigned long LostTexts();

/// How often a setter of the calling thread cut or refused a text for being too long. Such setters
/// say so in their headers alone; who must know compares before and after.
VOSMERE_API unsigned long CutTexts();

namespace detail {
VOSMERE_API void CountLostText();
VOSMERE_API void CountCutText();
/// Throws std::bad_alloc, also for a program that is built without exceptions.
[[noreturn]] VOSMERE_API void ThrowNoMemory();
}  // namespace detail

/// One owned text, or null. When memory runs out in an assignment the old text stays.
template <class Storage>
class OwnedText {
 public:
  OwnedText() = default;
  /// A copy; null stays null. Throws std::bad_alloc.
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

  WChar* get() const { return text_; }
  /// Where a record shows its text, the text is what is meant.
  operator WChar*() const { return text_; }

  /// Gives the text to the caller and keeps null.
  WChar* Detach() { return std::exchange(text_, nullptr); }

  /// Null leaves null.
  void AssignOrNull(const WChar* text) {
    if (text)
      Assign(WideView(text));
    else
      Clear();
  }

  /// Null leaves the empty text.
  void AssignOrEmpty(const WChar* text) { Assign(WideView(text)); }

  /// Null leaves null; a text of `limit` units or more changes nothing.
  void AssignIfShorter(const WChar* text, std::size_t limit) {
    const WideView view(text);
    if (!text)
      Clear();
    else if (view.size < limit)
      Assign(view);
    else
      detail::CountCutText();
  }

  /// Null, and a text of `limit` units or more, leave null.
  void AssignOrClear(const WChar* text, std::size_t limit) {
    const WideView view(text);
    if (text && view.size < limit)
      Assign(view);
    else
      Clear();
    if (view.size >= limit) detail::CountCutText();
  }

 private:
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
