// The layer in a program that also includes the system's header, with its macros and wchar_t.
#include <windows.h>
// The system's header comes first, as it may in a program.
#include <gtest/gtest.h>

#include <string>

#include "vosmere/cpp.h"

using namespace vosmere;

namespace {

TEST(WindowsNames, AreNotInTheWay) {
  const std::wstring name = L"Å日😀", address = L"http://a.example/";
  const Tree tree = NewTree(name);
  CUrlNode* const page = Add<CUrlNode>(tree, L"Åse", address);
  EXPECT_EQ(ToWString(tree->item->GetName()), name);
  EXPECT_TRUE(NameOf(*page) == L"Åse" && NameOf(*page) == "Åse" && AddressOf(*page) == address);
  EXPECT_EQ(ToUtf8(name), "Å日😀");
  Scheduler scheduler;
  const Job job = scheduler.After(std::chrono::hours(1), [] {});
  EXPECT_TRUE(job.IsPending() && SetTimes(*page, {.added = ParseDate("2008-03-01")}));
}

}  // namespace
