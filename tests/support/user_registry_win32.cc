#include <windows.h>

#include "tests/support/user_registry.h"
#include "vosmere/platform/win32/com.h"

namespace vosmere::test {

UserRegistry::UserRegistry() = default;

UserRegistry::~UserRegistry() {
  ::RegDeleteTreeW(HKEY_CURRENT_USER, win32::Native(Key("").get()));
}

void UserRegistry::Set(const std::string& key, const std::string& name, const std::string& bytes) {
  ::RegSetKeyValueW(HKEY_CURRENT_USER, win32::Native(Key(key).get()), win32::Native(W(name).get()),
                    REG_BINARY, bytes.data(), static_cast<DWORD>(bytes.size()));
}

}  // namespace vosmere::test
