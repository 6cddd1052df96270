#include "vosmere/platform/code_page.h"

#include "vosmere/platform/win32/com.h"

namespace vosmere {

static_assert(kCodePageSystem == CP_ACP && kCodePageUtf8 == CP_UTF8);

// A negative length would make the system look for a terminator.
int WideToBytes(unsigned codePage, const WChar* text, int length, char* bytes, int capacity) {
  if (length <= 0) return 0;
  return ::WideCharToMultiByte(codePage, 0, win32::Native(text), length, bytes, capacity, nullptr,
                               nullptr);
}

int BytesToWide(unsigned codePage, const char* bytes, int length, WChar* text, int capacity) {
  if (length <= 0) return 0;
  return ::MultiByteToWideChar(codePage, 0, bytes, length, win32::Native(text), capacity);
}

}  // namespace vosmere
