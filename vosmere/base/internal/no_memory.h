// Helpers that turn std::bad_alloc into a return value, such as the null that every `New` promises.
#pragma once

#include <new>

#include "vosmere/base/owned_text.h"

namespace vosmere {

/// The result of `make()`, or null when it throws std::bad_alloc. What was built before the
/// exception is freed by stack unwinding, so nothing leaks.
template <class Make>
auto NullIfNoMemory(Make make) -> decltype(make()) {
  try {
    return make();
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

/// The result of `work()`, or `instead` when it throws std::bad_alloc.
template <class Work, class Result>
Result UnlessNoMemory(Result instead, Work work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return instead;
  }
}

/// The same for results where `instead` could also mean "there is nothing": the loss is counted, so
/// that LostTexts tells the two apart.
template <class Work, class Result>
Result UnlessLost(Result instead, Work work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    detail::CountLostText();
    return instead;
  }
}

}  // namespace vosmere
