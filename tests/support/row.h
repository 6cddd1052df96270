// Chains in tests: what their cells show, in order, or what is wrong with the links.
//
//   EXPECT_EQ(Row(head, [](const Cell* cell) { return cell->name; }), "a b c");
#pragma once

#include <string>

namespace vosmere::test {

template <class Cell, class Show>
std::string Row(const Cell* head, Show show) {
  std::string row;
  for (const Cell* cell = head; cell; cell = cell->next) {
    row += (cell == head ? "" : " ") + show(cell);
    if (cell->next == head) return row + " BROKEN: endless";
    if (cell->next && cell->next->prev != cell) return row + " BROKEN: prev";
    if (!cell->next && head->prev != cell) return row + " BROKEN: last";
  }
  return row;
}

}  // namespace vosmere::test
