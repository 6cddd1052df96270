// The library's trace: lines for developers, which go to a hook; by default they are dropped.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Sets the function that receives every trace line: null-terminated UTF-8 with its line end, valid
/// during the call. It is called on the thread that traces, possibly on several threads at once,
/// and must not throw. Null restores the default: nothing is written.
VOSMERE_API void SetTraceHook(void (*hook)(const char* utf8Line));

namespace detail {

/// Null when memory runs out.
using TracedText = OwnedPointer<char, WithArrayDelete>;

/// Whether a hook is set.
VOSMERE_API bool TraceWanted();
/// Formats a line and passes it to the hook. A line that is too long is cut.
VOSMERE_API void TraceFormatted(const char* format, ...);
/// The start of a UTF-16 text in UTF-8; empty for null, and when memory runs out.
VOSMERE_API TracedText TraceText(const WChar* text);

/// TraceHold converts an argument and keeps the result alive during the call; TraceArgument gives
/// the form that printf takes.
inline auto TraceHold(const WChar* text) {
  return TraceText(text);
}
inline auto TraceHold(WChar* text) {
  return TraceText(text);
}
template <class Value>
auto TraceHold(Value value) {
  return value;
}
inline const char* TraceArgument(const TracedText& text) {
  return text ? text.get() : "";
}
template <class Value>
Value TraceArgument(Value value) {
  return value;
}

}  // namespace detail

/// Traces a line in the style of printf. UTF-16 texts are passed for %s; null is empty. Costs a
/// single test when no hook is set.
template <class... Arguments>
void Trace(const char* format, Arguments... arguments) {
  if (!detail::TraceWanted()) return;
  detail::TraceFormatted(format, detail::TraceArgument(detail::TraceHold(arguments))...);
}

}  // namespace vosmere
