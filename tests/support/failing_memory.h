// Memory that runs out when a test says so. The global operator new is replaced in the test
// program; system strings go through it too, except on Windows, where they are the system's. On
// Linux the XML parser's memory runs out as well.
//
//   const long before = LiveAllocations();
//   {
//     const FailingMemory memory(2);               // two allocations succeed, the third fails
//     EXPECT_EQ(CUrlNode::New(), nullptr);
//     EXPECT_TRUE(memory.Failed());
//   }
//   EXPECT_EQ(LiveAllocations(), before);          // and nothing was lost
#pragma once

#include <gtest/gtest.h>

namespace vosmere::test {

/// How many blocks this thread holds: the number that it allocated minus the number that it freed.
long LiveAllocations();

/// Counts one allocation of this thread; false when it has to fail.
bool MayAllocate();

/// Which allocations fail after those that succeed.
enum class Failures { kAll, kOne };

/// Lets `successes` more allocations of this thread succeed, then fails all others, or one, while
/// it lives.
class FailingMemory {
 public:
  explicit FailingMemory(long successes, Failures failures = Failures::kAll);
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;
  ~FailingMemory();

  /// Whether one has failed by now.
  bool Failed() const;
};

/// Calls `make` with its first, second, ... allocation failing, until none fails. `check` receives
/// each result and whether memory failed, and frees the result. Nothing may be leaked.
template <class Make, class Check>
void AtEachFailure(Make make, Check check, Failures failures = Failures::kAll) {
  bool failed = true;
  for (int successes = 0; failed; ++successes) {
    ASSERT_LT(successes, 1000);
    const long before = LiveAllocations();
    decltype(make()) made = nullptr;
    {
      const FailingMemory memory(successes, failures);
      made = make();
      failed = memory.Failed();
    }
    check(made, failed);
    EXPECT_EQ(LiveAllocations(), before) << "after " << successes;
  }
}

/// For a `make` whose result is complete or null; `free` accepts both.
template <class Make, class Free>
void ExpectNullAtEachFailure(Make make, Free free, Failures failures = Failures::kAll) {
  const auto check = [free](auto* made, bool failed) {
    EXPECT_EQ(made == nullptr, failed);
    free(made);
  };
  AtEachFailure(make, check, failures);
}

/// Whether system strings can be made to fail.
extern const bool kSystemStringsFail;

}  // namespace vosmere::test
