// What only tests need from the system; there is one source file per system.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "vosmere/base/types.h"

namespace vosmere::test {

/// Sets an environment variable; null removes it.
void SetVariable(const char* name, const char* value);
/// Sets TZ ("CST-8", "EST5"; null removes it), and makes the runtime read it now.
void SetTimeZone(const char* zone);

/// An environment variable, which is removed at the end of the scope.
struct Variable {
  Variable(const char* name, const char* value) : name(name) { SetVariable(name, value); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() { SetVariable(name, nullptr); }
  const char* name;
};

/// The time zone of the process until the end of the scope.
struct Zone {
  explicit Zone(const char* zone) { SetTimeZone(zone); }
  Zone(const Zone&) = delete;
  Zone& operator=(const Zone&) = delete;
  ~Zone() { SetTimeZone(nullptr); }
};

/// Runs `work` to its end on a thread with a stack of that many bytes.
void RunOnSmallStack(std::size_t bytes, std::function<void()> work);

/// Runs `work` and returns by how many bytes the process's memory grew at most; 0 if that is
/// unknown.
std::size_t PeakMemory(std::function<void()> work);

/// Whether a sanitizer is in use, which takes memory of its own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kSanitized = true;
#elif defined(__has_feature)
inline constexpr bool kSanitized = __has_feature(address_sanitizer);  // Clang
#else
inline constexpr bool kSanitized = false;
#endif

/// Whether this is Wine, whose HTTP client waits longer and accepts more replies than that of
/// Windows.
bool RunsOnWine();

/// Levels of nested elements that the platform's parser loads in any case.
extern const int kLevelsThatLoad;

/// The zone of a host name without a dot. Wine has no rule for the names of the local network.
extern const LONG kZoneOfPlainNames;

}  // namespace vosmere::test
