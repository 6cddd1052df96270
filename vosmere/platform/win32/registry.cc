#include "vosmere/platform/registry.h"

#include "vosmere/platform/win32/com.h"

namespace vosmere {

bool SetUserRegistry(const WChar* path) {
  return !path;
}

HKEY OpenUserKey(const WChar* path) {
  return OpenSubKey(HKEY_CURRENT_USER, path);
}

HKEY OpenSubKey(HKEY parent, const WChar* path) {
  HKEY key = nullptr;
  if (!parent || ::RegOpenKeyW(parent, win32::Native(path), &key) != ERROR_SUCCESS) return nullptr;
  return key;
}

void CloseKey(HKEY key) {
  if (key) ::RegCloseKey(key);
}

bool ReadKeyValue(HKEY key, const WChar* name, void* bytes, ULONG* size) {
  DWORD count = *size;
  if (!key || ::RegQueryValueExW(key, win32::Native(name), nullptr, nullptr,
                                 static_cast<BYTE*>(bytes), &count) != ERROR_SUCCESS)
    return false;
  *size = count;
  return true;
}

}  // namespace vosmere
