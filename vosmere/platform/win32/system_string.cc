// System strings by the functions of OLE Automation.
#include "vosmere/base/system_string.h"

#include <limits>

#include "vosmere/platform/win32/com.h"

namespace vosmere {

BSTR SysAllocString(const WChar* text) {
  return win32::Ours(::SysAllocString(win32::Native(text)));
}

BSTR SysAllocStringLen(const WChar* text, std::size_t length) {
  if (length > std::numeric_limits<ULONG>::max() / sizeof(WChar)) return nullptr;
  return win32::Ours(::SysAllocStringLen(win32::Native(text), static_cast<UINT>(length)));
}

// Not by the system's own function: it may move the old string before it copies a text that lies
// within it.
int SysReAllocString(BSTR* string, const WChar* text) {
  const BSTR copy = SysAllocString(text);
  if (text && !copy) return 0;
  SysFreeString(*string);
  *string = copy;
  return 1;
}

unsigned SysStringLen(const WChar* string) {
  return ::SysStringLen(const_cast<wchar_t*>(win32::Native(string)));
}

void SysFreeString(BSTR string) {
  ::SysFreeString(win32::Native(string));
}

}  // namespace vosmere
