#include "vosmere/cpp/result.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "vosmere/cpp/own.h"

namespace vosmere {
namespace {

TEST(Error, NamesThePlaceAsFarAsItIsKnown) {
  const struct {
    const char* source;
    int line, column;
    const char* text;
  } cases[] = {
      {"a.opml", 4, 12, "a.opml:4:12: mismatched tag"},
      {"a.opml", 4, 0, "a.opml:4: mismatched tag"},
      {"a.opml", 0, 0, "a.opml: mismatched tag"},
      {"a.opml", 0, 7, "a.opml: mismatched tag"},
      {"", 4, 12, "line 4:12: mismatched tag"},
      {"", 0, 0, "mismatched tag"},
  };
  for (const auto& c : cases) {
    DocumentError record{DocumentFault::kMalformed, c.line, c.column, 0, "mismatched tag"};
    std::ostringstream out;
    out << Error(c.source, record);
    EXPECT_EQ(out.str(), c.text);
  }
}

Result<std::unique_ptr<int>> Half(int number) {
  if (number % 2) return Error("half", "odd");
  auto half = std::make_unique<int>(number / 2);
  return half;
}

TEST(Result, HoldsAValueOrAnError) {
  Result<std::unique_ptr<int>> four = Half(8);
  ASSERT_TRUE(four);
  EXPECT_EQ(**four, 4);
  EXPECT_EQ(four->get(), (*four).get());
  EXPECT_EQ(ToString(four.error()), "") << "there is none";
  const std::unique_ptr<int> taken = *std::move(four);
  EXPECT_TRUE(four) << "after a move it still holds a value, an empty one";
  EXPECT_FALSE(*four);

  const Result<std::unique_ptr<int>> none = Half(7);
  EXPECT_FALSE(none);
  EXPECT_EQ(ToString(none.error()), "half: odd");
  EXPECT_DEATH(*none, "half: odd");
}

TEST(Out, FreesWhatItHeldAndOwnsWhatItIsGiven) {
  SystemString text(SysAllocString(nullptr));
  EXPECT_TRUE(CUnicodeTool::UTF8GetBSTR(Out(text), "one", 3));
  EXPECT_TRUE(CUnicodeTool::UTF8GetBSTR(Out(text), "two", 3));
  EXPECT_EQ(SysStringLen(text.get()), 3u);
  EXPECT_FALSE(CUnicodeTool::UTF8GetBSTR(Out(text), "", 0));
  EXPECT_EQ(text, nullptr);
}

}  // namespace
}  // namespace vosmere
