// The library's trace: one line at a time to a hook, nothing by default.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Receives every trace line as UTF-8, its line end included. Called on the thread that traces,
/// possibly on several at once; it must not throw. Null restores the default: nothing is written.
VOSMERE_API void SetTraceHook(void (*hook)(const char* utf8Line));

namespace detail {

/// Empty without memory.
using TracedText = OwnedPointer<char, WithArrayDelete>;

VOSMERE_API bool TraceWanted();
VOSMERE_API void TraceFormatted(const char* format, ...);
VOSMERE_API TracedText TraceText(const WChar* text);

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

/// Traces in the printf style; a wide text goes with %s. Costs one test when no hook is set.
template <class... Arguments>
void Trace(const char* format, Arguments... arguments) {
  if (!detail::TraceWanted()) return;
  detail::TraceFormatted(format, detail::TraceArgument(detail::TraceHold(arguments))...);
}

}  // namespace vosmere
