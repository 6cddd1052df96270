// Benchmarks of walking and searching a tree with the layer for C++ programs, compared with loops
// over the links that do the same: they skip links without an item. Loading and saving with the
// layer are in opml_bench.cc.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/sample_tree.h"
#include "vosmere/cpp/text.h"
#include "vosmere/cpp/walk.h"
#include "vosmere/tree/tree_walk.h"

namespace vosmere::bench {
namespace {

constexpr std::size_t kDocumentBytes = 1000 * 1000;

/// The pages of a collection, and the address of the last one.
class Sample {
 public:
  static Sample& Get() {
    static Sample sample;
    return sample;
  }

  const Collection& pages() const { return pages_; }
  RNode* top() const { return pages_->GetLocRNodeRoot(); }
  const std::string& address() const { return address_; }

 private:
  Sample() : pages_(NewSampleColct(kDocumentBytes)) {
    for (CUrlNode& page : Pages(pages_)) {
      SetAddress(page, "http://www.example/" + std::to_string(++count_));
      address_ = AddressOf(page);
    }
  }

  Collection pages_;
  int count_ = 0;
  std::string address_;
};

/// What a program does with each page.
std::size_t Use(const CUrlNode& page) {
  return page.GetUrl()[0] + static_cast<std::size_t>(page.GetVersion());
}

std::size_t Walk() {
  std::size_t sum = 0;
  for (CUrlNode& page : Pages(Sample::Get().pages())) sum += Use(page);
  return sum;
}

std::size_t PlainWalk() {
  std::size_t sum = 0;
  const auto use = [&](RNode* link) {
    if (link->type == NT_URL && link->item) sum += Use(*static_cast<CUrlNode*>(link->item));
    return true;
  };
  WalkBelow(Sample::Get().top(), use, [](RNode*) {});
  return sum;
}

/// Which a deep tree does not survive.
std::size_t WalkWithRecursion(RNode* folder) {
  std::size_t sum = 0;
  for (RNode* link = folder->firstChild; link; link = link->next) {
    if (link->type == NT_URL && link->item) sum += Use(*static_cast<CUrlNode*>(link->item));
    if (link->firstChild) sum += WalkWithRecursion(link);
  }
  return sum;
}
std::size_t RecursiveWalk() {
  return WalkWithRecursion(Sample::Get().top());
}

CUrlNode* FindPage() {
  return Find<CUrlNode>(Sample::Get().pages(), AtAddress{Sample::Get().address()});
}

CUrlNode* PlainFind(RNode* folder, const WChar* address) {
  for (RNode* link = folder->firstChild; link; link = link->next) {
    if (link->type == NT_URL && link->item) {
      auto* const page = static_cast<CUrlNode*>(link->item);
      if (SameText(page->GetUrl(), address)) return page;
    }
    if (!link->firstChild) continue;
    if (CUrlNode* const found = PlainFind(link, address)) return found;
  }
  return nullptr;
}
CUrlNode* PlainFind() {
  const Wide address(Sample::Get().address());
  return PlainFind(Sample::Get().top(), address);
}

template <auto Step>
void BM_Layer(benchmark::State& state) {
  Sample::Get();
  for (auto _ : state) benchmark::DoNotOptimize(Step());
}

BENCHMARK(BM_Layer<Walk>)->Name("LayerWalk/vosmere");
BENCHMARK(BM_Layer<PlainWalk>)->Name("LayerWalk/plain");
BENCHMARK(BM_Layer<RecursiveWalk>)->Name("LayerWalk/recursion");
BENCHMARK(BM_Layer<FindPage>)->Name("LayerFind/vosmere");
BENCHMARK(BM_Layer<static_cast<CUrlNode* (*)()>(PlainFind)>)->Name("LayerFind/plain");

}  // namespace
}  // namespace vosmere::bench
