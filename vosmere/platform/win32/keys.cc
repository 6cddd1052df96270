// The state of keys, from the system unless a program knows better.
#include "vosmere/platform/keys.h"

#include <windows.h>

#include <atomic>

namespace vosmere {
namespace {

std::atomic<short (*)(int)> keyStateSource{nullptr};

}  // namespace

static_assert(kKeyShift == VK_SHIFT && kKeyControl == VK_CONTROL && kKeyAlt == VK_MENU);

short KeyState(int virtualKey) {
  if (auto* const source = keyStateSource.load()) return source(virtualKey);
  return ::GetKeyState(virtualKey);
}

void SetKeyStateSource(short (*source)(int virtualKey)) {
  keyStateSource = source;
}

}  // namespace vosmere
