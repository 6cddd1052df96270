// Any bytes are read as an Internet shortcut: the address is one line, and a plain one is the same
// when it is the only line of a shortcut.
#include <algorithm>
#include <string>

#include "fuzz/support.h"
#include "vosmere/platform/posix/shortcut.h"

using namespace vosmere;
using namespace vosmere::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::u16string address = ShortcutAddressIn(std::string(data, data + size));
  Require(address.find_first_of(u"\r\n") == address.npos);
  const auto isPlain = [](char16_t unit) {
    return unit > ' ' && unit < 0x7F && unit != '"' && unit != '\'';
  };
  if (std::all_of(address.begin(), address.end(), isPlain)) {
    const std::string bytes(address.begin(), address.end());
    Require(ShortcutAddressIn("[InternetShortcut]\r\nURL=" + bytes) == address);
  }
  return 0;
}
