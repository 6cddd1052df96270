// What tests need from the system beyond the library's own seam; a file per system keeps it.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <functional>
#include <string>

namespace vosmere::test {

/// Sets the TZ environment variable ("CST-8", "EST5"; null removes it) for the process and its
/// runtime.
void SetTimeZone(const char* zone);

/// Runs `work` to its end on a thread with a stack of so many bytes.
void RunOnSmallStack(std::size_t bytes, std::function<void()> work);

/// Levels of nested elements that the platform's parser loads for certain.
extern const int kLevelsThatLoad;

/// Another time zone while it lives.
class ScopedTimeZone {
 public:
  explicit ScopedTimeZone(const char* zone) {
    if (const char* const old = std::getenv("TZ")) old_ = old;
    SetTimeZone(zone);
  }
  ScopedTimeZone(const ScopedTimeZone&) = delete;
  ScopedTimeZone& operator=(const ScopedTimeZone&) = delete;
  ~ScopedTimeZone() { SetTimeZone(old_.empty() ? nullptr : old_.c_str()); }

 private:
  std::string old_;
};

}  // namespace vosmere::test
