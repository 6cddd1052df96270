// The library's sort of 10,000 names, which is a bubble sort, beside a sort that may compare as it
// likes.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "vosmere/base/chain.h"
#include "vosmere/cpp.h"
#include "vosmere/tree/sort_node.h"

namespace vosmere::bench {
namespace {

constexpr int kNames = 10000;

/// Web pages with random names of 4 to 24 letters under one folder, the same on every run.
struct Pages {
  Pages() {
    std::minstd_rand random(1);
    for (int i = 0; i < kNames; ++i) {
      std::u16string name;
      for (auto length = 4 + random() % 21; length > 0; --length)
        name += static_cast<char16_t>((random() % 8 ? 'a' : 'A') + random() % 26);
      Add<CUrlNode>(folder.get(), name);
    }
    for (RNode* link : Children(folder.get())) links.push_back(link);
  }

  /// Puts the links into a chain in the order of `row`.
  void Relink(const std::vector<RNode*>& row) {
    folder->firstChild = nullptr;
    for (RNode* const link : row) chain::Append(folder->firstChild, link);
  }

  Tree folder = NewTree<CFolderNode>(u"folder");
  std::vector<RNode*> links;
};

bool NameBefore(const RNode* a, const RNode* b) {
  const WideView x(a->item->GetName()), y(b->item->GetName());
  return std::lexicographical_compare(
      x.begin(), x.end(), y.begin(), y.end(),
      [](WChar left, WChar right) { return FoldAscii(left) < FoldAscii(right); });
}

void Sort(benchmark::State& state) {
  Pages pages;
  for (auto _ : state) {
    pages.Relink(pages.links);
    pages.folder->firstChild = CSortRNode().Sort(pages.folder->firstChild, true);
  }
}

void StableSort(benchmark::State& state) {
  Pages pages;
  for (auto _ : state) {
    std::vector<RNode*> row = pages.links;
    std::stable_sort(row.begin(), row.end(), NameBefore);
    pages.Relink(row);
  }
}

BENCHMARK(Sort)->Name("Sort/10000 names/vosmere")->Unit(benchmark::kMillisecond);
BENCHMARK(StableSort)->Name("Sort/10000 names/stable_sort")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vosmere::bench
