// A handle of WinINet, and a timer that ends the calls that wait on it.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <wininet.h>

#include <atomic>

#include "vosmere/base/types.h"

namespace vosmere::win32 {

/// Owns a handle, which is closed once: by the owner, or by a Watch on another thread.
class Handle {
 public:
  Handle() = default;
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { Close(); }

  HINTERNET get() const { return handle_; }
  void Reset(HINTERNET handle) {
    Close();
    handle_ = handle;
  }
  void Close() {
    if (HINTERNET const handle = handle_.exchange(nullptr)) ::InternetCloseHandle(handle);
  }

 private:
  std::atomic<HINTERNET> handle_ = nullptr;
};

/// Closes a handle when a time has passed, which ends the call that waits on it. WinINet's own time
/// limits start again with every byte.
class Watch {
 public:
  Watch(Handle& handle, LONGLONG milliseconds)
      : timer_(::CreateThreadpoolTimer(&Watch::End, &handle, nullptr)),
        end_(::GetTickCount64() + static_cast<ULONGLONG>(milliseconds)) {
    ULARGE_INTEGER due;
    due.QuadPart = static_cast<ULONGLONG>(-10000LL * milliseconds);
    ::FILETIME time = {due.LowPart, due.HighPart};
    if (timer_) ::SetThreadpoolTimer(timer_, &time, 0, 0);
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() {
    if (!timer_) return;
    ::SetThreadpoolTimer(timer_, nullptr, 0, 0);
    ::WaitForThreadpoolTimerCallbacks(timer_, TRUE);
    ::CloseThreadpoolTimer(timer_);
  }

  /// Whether the time has passed.
  bool Passed() const { return ::GetTickCount64() >= end_; }

 private:
  static void CALLBACK End(PTP_CALLBACK_INSTANCE, void* watched, PTP_TIMER) {
    static_cast<Handle*>(watched)->Close();
  }

  PTP_TIMER timer_;
  ULONGLONG end_;
};

}  // namespace vosmere::win32
