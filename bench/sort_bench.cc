// Benchmarks of sorting 10,000 names, compared with std::stable_sort, which is free to choose its
// comparisons. From Z to A the library must give the result of a bubble sort with a comparison that
// is not transitive.
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
      [](WChar left, WChar right) { return ascii::Fold(left) < ascii::Fold(right); });
}

/// Sorts up or down. The links are in random order (0), already sorted (1) or reversed (-1).
template <bool kUp, int kOrder>
void Sort(benchmark::State& state) {
  Pages pages;
  if (kOrder != 0) std::stable_sort(pages.links.begin(), pages.links.end(), NameBefore);
  if (kOrder < 0) std::reverse(pages.links.begin(), pages.links.end());
  for (auto _ : state) {
    pages.Relink(pages.links);
    pages.folder->firstChild = CSortRNode().Sort(pages.folder->firstChild, kUp);
  }
}

/// The minimum for any sort: one comparison of each name with the next.
void OnePass(benchmark::State& state) {
  Pages pages;
  for (auto _ : state) {
    pages.Relink(pages.links);
    int inOrder = 0;
    for (RNode* link = pages.folder->firstChild; link->next; link = link->next)
      inOrder += !NameBefore(link->next, link);
    benchmark::DoNotOptimize(inOrder);
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

BENCHMARK(Sort<true, 0>)->Name("Sort/10000 names/vosmere")->Unit(benchmark::kMillisecond);
BENCHMARK(Sort<false, 0>)->Name("Sort/10000 names down/vosmere")->Unit(benchmark::kMillisecond);
BENCHMARK(StableSort)->Name("Sort/10000 names/stable_sort")->Unit(benchmark::kMillisecond);
BENCHMARK(StableSort)->Name("Sort/10000 names down/stable_sort")->Unit(benchmark::kMillisecond);
BENCHMARK(Sort<true, 1>)->Name("Sort/sorted/vosmere")->Unit(benchmark::kMillisecond);
BENCHMARK(Sort<true, -1>)->Name("Sort/reversed/vosmere")->Unit(benchmark::kMillisecond);
BENCHMARK(OnePass)->Name("Sort/sorted/one pass")->Unit(benchmark::kMillisecond);
BENCHMARK(OnePass)->Name("Sort/reversed/one pass")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vosmere::bench
