// Any bytes are read as an Internet shortcut.
#include <cstddef>
#include <cstdint>

#include "vosmere/platform/posix/shortcut.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vosmere::ShortcutAddressIn(std::string(data, data + size));
  return 0;
}
