// Turning exhausted memory into the null that every `New` promises.
#pragma once

#include <new>

#include "vosmere/base/owned_text.h"

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

/// The result of `work()`, or `instead` when memory ran out on the way.
template <class Work, class Result>
Result UnlessNoMemory(Result instead, Work work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return instead;
  }
}

/// The same where `instead` also means that there is nothing: LostTexts tells the two apart.
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
