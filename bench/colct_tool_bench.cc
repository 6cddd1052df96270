// Benchmarks of merging lists of 100,000 collections and of removing collections from them. The
// time should grow linearly with the length of the lists.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>

#include "bench/document_bench.h"
#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_tool.h"
#include "vosmere/cpp.h"

namespace vosmere::bench {
namespace {

/// A list of collections with the addresses `first` to `last`, each modulo `different`.
RColctItem* NewList(int first, int last, int different) {
  RColctItem* head = nullptr;
  for (int i = first; i < last; ++i) {
    CColctNode* const colct = CColctNode::New();
    const std::string number = std::to_string(i % different);
    colct->SetUrl(
        Wide(u"http://feeds.example/news/" + std::u16string(number.begin(), number.end())));
    chain::Append(head, RColctItem::New(colct));
  }
  return head;
}

/// Merges lists of which half of the old collections are in the new one.
void Merge(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    RColctItem* old = NewList(0, count, 2 * count);
    RColctItem* const fresh = NewList(count / 2, count + count / 2, 2 * count);
    RColctItem* removed = nullptr;
    Timed(state, [&] { return CRColctTool().UpdateRColctItemList(fresh, &old, &removed); });
    for (RColctItem* const list : {old, fresh, removed}) RColctItem::DeleteList(list);
  }
}

/// Removes duplicates, which are half of the collections.
void Thin(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    RColctItem* const list = NewList(0, count, count / 2);
    Timed(state, [&] { return CRColctTool().DeleteDuplcateColct(list); });
    RColctItem::DeleteList(list);
  }
}

/// Removes every second collection by its address.
void DeleteByUrl(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state) {
    RColctItem* list = NewList(0, count, 2);
    Timed(state, [&] {
      return CRColctTool().DeleteColctByUrl(&list, Wide(u"http://feeds.example/news/0"));
    });
    RColctItem::DeleteList(list);
  }
}

#define VOSMERE_LISTS ->Arg(10000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMillisecond)
BENCHMARK(Merge)->Name("ColctMerge") VOSMERE_LISTS;
BENCHMARK(Thin)->Name("ColctDuplicates") VOSMERE_LISTS;
BENCHMARK(DeleteByUrl)->Name("ColctByUrl") VOSMERE_LISTS;

}  // namespace
}  // namespace vosmere::bench
