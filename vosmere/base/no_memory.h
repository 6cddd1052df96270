// Turning exhausted memory into the null that every `New` promises.
#pragma once

#include <new>

namespace vosmere {

/// The result of `make()`, or null when memory ran out on the way. What was built by then is undone
/// by the usual unwinding, so nothing leaks.
template <class Make>
auto NullIfNoMemory(Make make) -> decltype(make()) {
  try {
    return make();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace vosmere
