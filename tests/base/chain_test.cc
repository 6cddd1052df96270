#include "vosmere/base/chain.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/row.h"
#include "tests/support/wide.h"
#include "vosmere/base/chain_sort.h"
#include "vosmere/nodes/compare.h"

namespace vosmere::test {
namespace {

struct Cell {
  Cell* prev = this;
  Cell* next = nullptr;
  std::string name;
};

std::string Names(const Cell* head) {
  return Row(head, [](const Cell* cell) { return cell->name; });
}

/// The cells of a test; a chain is made of the named ones, in order.
class ChainTest : public testing::Test {
 protected:
  Cell* Add(const std::string& name) {
    cells_.emplace_back().name = name;
    return &cells_.back();
  }
  Cell* Make(const std::vector<std::string>& names) {
    Cell* head = nullptr;
    for (const auto& name : names) chain::Append(head, Add(name));
    return head;
  }
  Cell* operator[](const std::string& name) {
    for (Cell& cell : cells_)
      if (cell.name == name) return &cell;
    return nullptr;
  }

 private:
  std::deque<Cell> cells_;
};

TEST_F(ChainTest, GrowsAtEveryPlace) {
  Cell* head = Make({"b", "d"});
  chain::Prepend(head, Add("a"));
  chain::InsertAfter(head, (*this)["b"], Add("c"));
  chain::InsertAfter(head, (*this)["d"], Add("f"));
  EXPECT_FALSE(chain::InsertBefore((*this)["f"], Add("e")));
  EXPECT_TRUE(chain::InsertBefore(head, Add("0")));
  head = chain::FindHead((*this)["f"]);
  EXPECT_EQ(Names(head), "0 a b c d e f");
}

TEST_F(ChainTest, JoinsChainsOfAnyLength) {
  const std::vector<std::vector<std::string>> parts = {{}, {"a"}, {"a", "b"}, {"a", "b", "c"}};
  for (const auto& front : parts) {
    for (const auto& back : parts) {
      Cell* head = Make(front);
      chain::AppendChain(head, Make(back));
      auto all = front;
      all.insert(all.end(), back.begin(), back.end());
      EXPECT_EQ(Names(head), Names(Make(all)));
    }
  }
}

TEST_F(ChainTest, UnlinkSaysWhetherItWasTheHeadAndLeavesTheCellAlone) {
  struct {
    const char* cell;
    bool wasHead;
    const char* left;
  } const steps[] = {{"b", false, "a c d"}, {"d", false, "a c"}, {"a", true, "c"}, {"c", true, ""}};
  Cell* head = Make({"a", "b", "c", "d"});
  for (const auto& step : steps) {
    Cell* const cell = (*this)[step.cell];
    EXPECT_EQ(chain::Unlink(head, cell), step.wasHead) << step.cell;
    EXPECT_EQ(Names(head), step.left);
    EXPECT_EQ(Names(cell), step.cell);
  }
}

TEST_F(ChainTest, ALoopMayUnlinkWhatItWasGiven) {
  Cell* head = Make({"a", "b", "c", "d"});
  for (Cell* cell : chain::Cells(head))
    if (cell->name != "c") chain::Unlink(head, cell);
  EXPECT_EQ(Names(head), "c");
}

/// Compares as the sorters do, with the prefix rule.
int Compare(const std::string& a, const std::string& b) {
  return CompareTextNoCase(W(a), W(b));
}

/// The same exchanges, spelled out for a row of texts.
bool NaiveSort(std::vector<std::string>& row) {
  bool any = false;
  bool swapped = true;
  for (std::size_t end = row.size() - 1; swapped && end > 0; --end) {
    swapped = false;
    for (std::size_t i = 0; i < end; ++i) {
      if (Compare(row[i], row[i + 1]) >= 0) continue;
      std::swap(row[i], row[i + 1]);
      swapped = any = true;
    }
  }
  return any;
}

TEST_F(ChainTest, SortGivesWhatABubbleSortGivesWhereTheComparisonIsNotTransitive) {
  std::mt19937 random(20);
  for (int round = 0; round < 2000; ++round) {
    std::vector<std::string> row(1 + random() % 12);
    for (auto& text : row)
      for (auto length = random() % 4; length > 0; --length) text += "abAB"[random() % 4];
    Cell* head = Make(row);
    const auto compare = [](Cell* a, Cell* b) { return Compare(a->name, b->name); };
    ASSERT_EQ(chain::BubbleSort(head, compare), NaiveSort(row));
    ASSERT_EQ(Names(head), Names(Make(row)));
  }
}

TEST_F(ChainTest, SortOfASortedChainIsOnePass) {
  Cell* head = Make({"c", "b", "b", "a"});
  int compared = 0;
  EXPECT_FALSE(chain::BubbleSort(head, [&](Cell* a, Cell* b) {
    ++compared;
    return Compare(a->name, b->name);
  }));
  EXPECT_EQ(compared, 3);
}

TEST(CompareText, HoldsThePrefixRuleAndFoldsAsciiAlone) {
  struct {
    const char* a;
    const char* b;
    int sign;
  } const cases[] = {{"ab", "abc", 0}, {"abc", "ab", 1}, {"ABC", "abc", 0}, {"a", "b", -1},
                     {"", "x", 0},     {"x", "", 1},     {"_", "A", -1},    {"É", "é", -1}};
  for (const auto& c : cases) {
    const int result = Compare(c.a, c.b);
    EXPECT_EQ((result > 0) - (result < 0), c.sign) << c.a << " against " << c.b;
  }
  EXPECT_EQ(CompareTextNoCase(nullptr, W("a")), 0);
  EXPECT_GT(CompareTextNoCase(W("a"), nullptr), 0);
}

}  // namespace
}  // namespace vosmere::test
