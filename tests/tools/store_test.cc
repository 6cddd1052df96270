#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/tool.h"
#include "vosmere/cpp/store.h"
#include "vosmere/cpp/tree.h"

namespace vosmere::test {
namespace {

using testing::HasSubstr;

TEST(Tool, ReadsStoresAndRestoresTheirCheckpoints) {
  const TempFolder folder;
  const std::filesystem::path path = folder / "store";
  {
    Result<Store> store = Store::Open(path.u16string());
    ASSERT_TRUE(store) << store.error();
    SetName(*store->tree()->item, "Library");
    CFolderNode* const trips = Add<CFolderNode>(store->tree(), "Trips");
    ASSERT_FALSE(store->Checkpoint());
    EXPECT_THAT(RunTool("show " + Quoted(path)).out, HasSubstr("[folder] Trips")) << "while open";
    Add<CUrlNode>(trips, "Rome", "http://rome.example/");
  }
  const std::string quoted = Quoted(path);
  const std::string shown = "[tree] Library\n  [folder] Trips\n";
  const std::string page = "    [page] Rome  http://rome.example/\n";
  EXPECT_THAT(RunTool("show " + quoted).out, HasSubstr(shown + page));
  EXPECT_EQ(RunTool("log " + quoted).out,
            "1 Library is changed\n2 Trips is added in Library\n3 Rome is added in Trips\n");
  WriteBytes(path / "checkpoint-1", "broken");
  const Outcome recover = RunTool("recover " + quoted + " --restore 2");
  EXPECT_EQ(recover.exitCode, 0) << recover.errors;
  EXPECT_THAT(recover.out, HasSubstr("checkpoint 1: does not load: a record ends early"));
  const Outcome restored = RunTool("show " + quoted);
  EXPECT_THAT(restored.out, HasSubstr(shown));
  EXPECT_THAT(restored.out, Not(HasSubstr(page))) << "which came later";
}

}  // namespace
}  // namespace vosmere::test
