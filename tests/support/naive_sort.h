// A bubble sort of a row, spelled out, for tests of the sorters.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace vosmere::test {

struct Exchanges {
  bool any = false;
  int compared = 0;
};

/// `compare` below zero means that its second argument belongs before its first.
template <class Item, class Compare>
Exchanges NaiveSort(std::vector<Item>& items, Compare compare) {
  Exchanges exchanges;
  bool swapped = true;
  for (std::size_t end = items.size() - 1; swapped && end > 0; --end) {
    swapped = false;
    for (std::size_t i = 0; i < end; ++i) {
      ++exchanges.compared;
      if (compare(items[i], items[i + 1]) >= 0) continue;
      std::swap(items[i], items[i + 1]);
      swapped = exchanges.any = true;
    }
  }
  return exchanges;
}

}  // namespace vosmere::test
