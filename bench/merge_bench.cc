// Benchmarks of comparing and merging trees of 100,000 items, compared with only copying the trees.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "vosmere/cpp/merge.h"

namespace vosmere::bench {
namespace {

constexpr int kItems = 100'000;

/// The base, and two sides that have moved, renamed and added a twentieth each.
struct Sides {
  Tree base = NewTree("Library"), ours, theirs;

  Sides() {
    CFolderNode* folder = nullptr;
    for (int i = 0; i < kItems; ++i) {
      const std::string number = std::to_string(100'000'000 + i);
      CBaseNode* item = nullptr;
      if (i % 100 == 0)
        item = folder = Add<CFolderNode>(base, "Folder " + number);
      else
        item = Add<CUrlNode>(folder, "Page " + number, "http://pages.example/" + number);
      item->SetUUID(Wide("00000000-0000-4000-8000-000" + number));
    }
    ours = Copy(base);
    theirs = Copy(base);
    Change(ours, 0);
    Change(theirs, 7);
  }

 private:
  static void Change(const Tree& tree, int first) {
    std::vector<CUrlNode*> pages;
    for (CUrlNode& page : Pages(tree)) pages.push_back(&page);
    for (std::size_t i = static_cast<std::size_t>(first); i + 40 < pages.size(); i += 60) {
      SetName(*pages[i], "Another name");
      Move(*pages[i + 20], tree->firstChild);
      Add<CUrlNode>(tree->firstChild, "Added", "http://added.example/" + std::to_string(i));
    }
  }
};

const Sides& TheSides() {
  static const Sides sides;
  return sides;
}

void DiffOurs(benchmark::State& state) {
  for (auto _ : state)
    if (Diff(TheSides().base, TheSides().ours).size() < 1000) state.SkipWithError("failed");
}
BENCHMARK(DiffOurs)->Name("Diff100k/vosmere")->Unit(benchmark::kMillisecond);

void DiffCopies(benchmark::State& state) {
  for (auto _ : state) {
    const Tree a = Copy(TheSides().base), b = Copy(TheSides().ours);
    benchmark::DoNotOptimize(b.get());
  }
}
BENCHMARK(DiffCopies)->Name("Diff100k/copies")->Unit(benchmark::kMillisecond);

void MergeOurs(benchmark::State& state) {
  for (auto _ : state)
    if (!Merge(TheSides().base, TheSides().ours, TheSides().theirs).tree)
      state.SkipWithError("failed");
}
BENCHMARK(MergeOurs)->Name("Merge100k/vosmere")->Unit(benchmark::kMillisecond);

void MergeCopies(benchmark::State& state) {
  for (auto _ : state) {
    const Tree a = Copy(TheSides().base), b = Copy(TheSides().ours), c = Copy(TheSides().theirs);
    benchmark::DoNotOptimize(c.get());
  }
}
BENCHMARK(MergeCopies)->Name("Merge100k/copies")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vosmere::bench
