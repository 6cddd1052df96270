#include "vosmere/base/chain_sort.h"

#include <deque>
#include <random>

#include "tests/support/naive_sort.h"
#include "tests/support/test.h"
#include "vosmere/tree/sort_order.h"

namespace vosmere::test::chain_sort {

/// Compares as the sorters do, with the prefix rule.
int Compare(const std::string& a, const std::string& b) {
  return CompareTextNoCase(W(a), W(b));
}

struct Cell {
  Cell* prev;
  Cell* next;
  std::string text;
};

TEST(ChainSort, GivesWhatABubbleSortGivesWhereTheComparisonIsNotTransitive) {
  std::mt19937 random(20);
  for (int round = 0; round < 2000; ++round) {
    std::vector<std::string> texts(1 + random() % 12);
    for (auto& text : texts)
      for (auto length = random() % 4; length > 0; --length) text += "abAB"[random() % 4];
    std::deque<Cell> cells;
    Cell* head = nullptr;
    for (const auto& text : texts)
      chain::Append(head, &cells.emplace_back(Cell{nullptr, nullptr, text}));
    int compared = 0;
    const bool anySwap = chain::BubbleSort(head, [&](Cell* a, Cell* b) {
      ++compared;
      return Compare(a->text, b->text);
    });
    const Exchanges expected = NaiveSort(texts, Compare);
    std::string row;
    for (const auto& text : texts) row += (&text == &texts[0] ? "" : " ") + text;
    ASSERT_EQ(Row(head, [](const Cell* cell) { return cell->text; }), row);
    ASSERT_EQ(anySwap, expected.any);
    ASSERT_EQ(compared, expected.compared) << "one pass where it is sorted already";
  }
}

TEST(CompareText, HoldsThePrefixRuleAndFoldsAsciiAlone) {
  struct {
    const char *a, *b;
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

}  // namespace vosmere::test::chain_sort
