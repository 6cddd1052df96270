// What nearly every test uses, in one include. A test file frames its tests with a namespace of its
// own below this one, named after the file, so that its helpers meet no other file's:
//
//   #include "vosmere/tabs/hash_table.h"
//
//   #include "tests/support/test.h"
//
//   namespace vosmere::test::hash_table {
//   ...
//   }  // namespace vosmere::test::hash_table
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/failing_memory.h"
#include "tests/support/files.h"
#include "tests/support/row.h"
#include "tests/support/wide.h"

namespace vosmere::test {

using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;

/// Sets a hook of the library's until the end of the scope.
template <auto Set>
struct Hooked {
  template <class Hook>
  explicit Hooked(const Hook& hook) {
    Set(hook);
  }
  Hooked(const Hooked&) = delete;
  Hooked& operator=(const Hooked&) = delete;
  ~Hooked() { Set(nullptr); }
};

/// Does the work on that many threads at the same time.
inline void AtOnce(int threads, const std::function<void(int thread)>& work) {
  std::vector<std::thread> running;
  for (int i = 0; i < threads; ++i) running.emplace_back(work, i);
  for (std::thread& thread : running) thread.join();
}

}  // namespace vosmere::test
