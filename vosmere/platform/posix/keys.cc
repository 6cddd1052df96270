#include "vosmere/platform/keys.h"

#include <atomic>

namespace vosmere {
namespace {

std::atomic<short (*)(int)> keyStateSource{nullptr};

}  // namespace

// There is no keyboard to ask without a display, and not one way to ask with one.
short KeyState(int virtualKey) {
  auto* const source = keyStateSource.load();
  return source ? source(virtualKey) : 0;
}

void SetKeyStateSource(short (*source)(int virtualKey)) { keyStateSource = source; }

}  // namespace vosmere
