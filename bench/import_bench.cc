// Benchmarks of importing documents, compared with loading them. Those of the library are
// well-formed, so that an import may cost at most 1.3 of a load.
#include <string>

#include "bench/document_bench.h"
#include "bench/sample_tree.h"
#include "vosmere/cpp.h"

namespace vosmere::bench {
namespace {

constexpr std::size_t kDocumentBytes = 10 * 1000 * 1000;

const std::string& TreeDocument() {
  static const std::string document = SaveToBytes(Tree(NewSampleTree(kDocumentBytes)))->bytes;
  return document;
}
const std::string& ColctDocument() {
  static const std::string document =
      SaveToBytes(Collection(NewSampleColct(kDocumentBytes)))->bytes;
  return document;
}
/// The tree as another program may write it.
const std::string& OddDocument() {
  static const std::string document = [] {
    std::string odd = TreeDocument();
    for (std::size_t at = 0; (at = odd.find("xmlUrl", at)) != odd.npos;)
      odd.replace(at, 6, "xmlurl");
    return odd;
  }();
  return document;
}

bool DoImport(const std::string& document) {
  return static_cast<bool>(Import(Bytes(document)));
}
template <class Kind>
bool DoLoad(const std::string& document) {
  return static_cast<bool>(Load<Kind>(Bytes(document)));
}

template <const std::string& (*Document)(), bool (*Read)(const std::string&)>
void BM_Import(benchmark::State& state) {
  MeasureLoad(state, Document(), Heap::kWarm, Read, [](bool isRead) {
    if (!isRead) Die("a document cannot be read");
  });
}

BENCHMARK(BM_Import<TreeDocument, DoImport>)->Name("ImportOpml/vosmere")->UseManualTime();
BENCHMARK(BM_Import<TreeDocument, DoLoad<Tree>>)->Name("ImportOpml/load")->UseManualTime();
BENCHMARK(BM_Import<ColctDocument, DoImport>)->Name("ImportRss/vosmere")->UseManualTime();
BENCHMARK(BM_Import<ColctDocument, DoLoad<Collection>>)->Name("ImportRss/load")->UseManualTime();
// With a repair at every collection.
BENCHMARK(BM_Import<OddDocument, DoImport>)->Name("ImportOdd/vosmere")->UseManualTime();
BENCHMARK(BM_Import<OddDocument, DoLoad<Tree>>)->Name("ImportOdd/load")->UseManualTime();

}  // namespace
}  // namespace vosmere::bench
