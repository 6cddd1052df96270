#include <cstdio>

#include "tests/support/user_registry.h"
#include "vosmere/platform/registry.h"

namespace vosmere::test {

UserRegistry::UserRegistry() : exported_("\xEF\xBB\xBFWindows Registry Editor Version 5.00\r\n") {
  WriteBytes(folder_ / "user.reg", exported_);
  SetUserRegistry(W(folder_ / "user.reg"));
}

UserRegistry::~UserRegistry() {
  SetUserRegistry(nullptr);
}

void UserRegistry::Set(const std::string& key, const std::string& name, const std::string& bytes) {
  exported_ += "\r\n[HKEY_CURRENT_USER\\" + Path(key) + "]\r\n\"" + name + "\"=hex:";
  for (const char byte : bytes) {
    char digits[8];
    std::snprintf(digits, sizeof digits, "%02x,", static_cast<unsigned char>(byte));
    exported_ += digits;
  }
  WriteBytes(folder_ / "user.reg", exported_ + "\r\n");
}

}  // namespace vosmere::test
