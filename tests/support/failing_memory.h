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

/// How many blocks this thread holds: those it allocated less those it freed.
long LiveAllocations();

/// Counts one allocation of this thread; false when it has to fail.
bool MayAllocate();

/// Lets `successes` more allocations of this thread succeed and fails all others while it lives.
class FailingMemory {
 public:
  explicit FailingMemory(long successes);
  FailingMemory(const FailingMemory&) = delete;
  FailingMemory& operator=(const FailingMemory&) = delete;
  ~FailingMemory();

  /// Whether one has failed by now.
  bool Failed() const;
};

/// Calls `make` with its first, second, ... allocation failing until none does; `check` is told
/// what came of each and whether memory failed, and frees it. Nothing may be lost.
template <class Make, class Check>
void AtEachFailure(Make make, Check check) {
  bool failed = true;
  for (int successes = 0; failed; ++successes) {
    ASSERT_LT(successes, 1000);
    const long before = LiveAllocations();
    decltype(make()) made = nullptr;
    {
      const FailingMemory memory(successes);
      made = make();
      failed = memory.Failed();
    }
    check(made, failed);
    EXPECT_EQ(LiveAllocations(), before) << "after " << successes;
  }
}

/// For a `make` that is whole or null; `free` takes either.
template <class Make, class Free>
void ExpectNullAtEachFailure(Make make, Free free) {
  AtEachFailure(make, [free](auto* made, bool failed) {
    EXPECT_EQ(made == nullptr, failed);
    free(made);
  });
}

/// Whether system strings can be made to fail.
extern const bool kSystemStringsFail;

}  // namespace vosmere::test
