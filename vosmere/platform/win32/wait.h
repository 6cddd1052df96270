// Waits for kernel objects until a deadline.
#pragma once

#include <windows.h>

#include <algorithm>
#include <chrono>

namespace vosmere {

/// WaitForMultipleObjects for any of the handles. It never returns WAIT_TIMEOUT before the
/// deadline: the system counts in whole milliseconds and may wake up a little early, so the rest is
/// waited for again.
inline DWORD WaitUntil(const HANDLE* handles, DWORD count,
                       std::chrono::steady_clock::time_point deadline) {
  using namespace std::chrono;
  if (deadline == steady_clock::time_point::max())
    return ::WaitForMultipleObjects(count, handles, FALSE, INFINITE);
  for (;;) {
    const auto left = ceil<milliseconds>(deadline - steady_clock::now()).count();
    const auto wait = std::clamp<long long>(left, 0, 0x7FFFFFFF);
    const DWORD result = ::WaitForMultipleObjects(count, handles, FALSE, static_cast<DWORD>(wait));
    if (result != WAIT_TIMEOUT || left <= 0) return result;
  }
}

}  // namespace vosmere
