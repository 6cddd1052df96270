// What tests need from the system beyond the library's own seam; a file per system keeps it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "vosmere/base/types.h"

namespace vosmere::test {

/// Sets the TZ environment variable ("CST-8", "EST5"; null removes it).
void SetZoneVariable(const char* zone);
/// The same for the process and its runtime, which looks at the variable now.
void SetTimeZone(const char* zone);

/// The same while it lives.
struct Zone {
  explicit Zone(const char* zone) { SetTimeZone(zone); }
  Zone(const Zone&) = delete;
  Zone& operator=(const Zone&) = delete;
  ~Zone() { SetTimeZone(nullptr); }
};

/// Runs `work` to its end on a thread with a stack of so many bytes.
void RunOnSmallStack(std::size_t bytes, std::function<void()> work);

/// Runs `work` and returns how many bytes of memory the process had at most on top of those that it
/// had before; 0 where that cannot be told.
std::size_t PeakMemory(std::function<void()> work);

/// Whether a sanitizer takes memory of its own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

/// Whether the system only stands in for Windows: its HTTP client takes more time and more replies
/// than the real one.
bool RunsOnWine();

/// Levels of nested elements that the platform's parser loads for certain.
extern const int kLevelsThatLoad;

/// The zone of a host name without a dot. Wine's table takes no name for the own network's.
extern const LONG kZoneOfPlainNames;

}  // namespace vosmere::test
