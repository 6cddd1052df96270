// The trace hook and the formatting of lines.
#include "vosmere/platform/trace.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <new>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/code_page.h"

namespace vosmere {
namespace {

std::atomic<void (*)(const char*)> traceHook{nullptr};

/// Ends a line that is too long at `last`, or before it when `last` is within a UTF-8 character.
void EndLine(char* last) {
  while ((*last & 0xC0) == 0x80) --last;
  last[0] = '\n';
  last[1] = 0;
}

}  // namespace

void SetTraceHook(void (*hook)(const char* utf8Line)) {
  traceHook = hook;
}

namespace detail {

bool TraceWanted() {
  return traceHook.load(std::memory_order_relaxed) != nullptr;
}

// A trace must never cause a failure: the line is built on the stack, and a text is left out when
// memory for it runs out.
void TraceFormatted(const char* format, ...) {
  char line[4096];
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  if (length >= static_cast<int>(sizeof line)) EndLine(line + sizeof line - 2);
  if (auto* const hook = traceHook.load()) hook(line);  // may have been reset since TraceWanted
}

TracedText TraceText(const WChar* text) {
  // At most 3 bytes for each code unit, so one text fits a line.
  const WideView view = WideView(text).First(1024);
  const int room = static_cast<int>(view.size) * 3;
  TracedText utf8(new (std::nothrow) char[room + 1]);
  if (utf8) utf8.get()[WideToBytes(kCodePageUtf8, view.data, room / 3, utf8.get(), room)] = '\0';
  return utf8;
}

}  // namespace detail
}  // namespace vosmere
