// The registry of the current user.
#include "vosmere/platform/registry.h"

#include "vosmere/base/owned_text.h"
#include "vosmere/platform/win32/com.h"

namespace vosmere {
namespace {

/// Whether a call succeeded. A failure for lack of memory is counted by LostTexts.
bool IsFine(LSTATUS status) {
  if (status == ERROR_NOT_ENOUGH_MEMORY || status == ERROR_OUTOFMEMORY) detail::CountLostText();
  return status == ERROR_SUCCESS;
}

}  // namespace

bool SetUserRegistry(const WChar* path) {
  return !path;
}

HKEY OpenUserKey(const WChar* path) {
  return OpenSubKey(HKEY_CURRENT_USER, path);
}

HKEY OpenSubKey(HKEY parent, const WChar* path) {
  HKEY key = nullptr;
  return parent && IsFine(::RegOpenKeyW(parent, win32::Native(path), &key)) ? key : nullptr;
}

void CloseKey(HKEY key) {
  if (key) ::RegCloseKey(key);
}

bool ReadKeyValue(HKEY key, const WChar* name, void* bytes, ULONG* size) {
  DWORD count = *size;
  if (!key || !IsFine(::RegQueryValueExW(key, win32::Native(name), nullptr, nullptr,
                                         static_cast<BYTE*>(bytes), &count)))
    return false;
  *size = count;
  return true;
}

}  // namespace vosmere
