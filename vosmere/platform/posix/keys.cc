// The state of keys: none is held, unless a program knows better.
#include "vosmere/platform/keys.h"

#include <atomic>

namespace vosmere {
namespace {

std::atomic<short (*)(int)> keyStateSource{nullptr};

}  // namespace

short KeyState(int virtualKey) {
  auto* const source = keyStateSource.load();
  return source ? source(virtualKey) : short{0};
}

void SetKeyStateSource(short (*source)(int virtualKey)) {
  keyStateSource = source;
}

}  // namespace vosmere
