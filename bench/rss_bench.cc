// Benchmarks of loading and saving a collection of 10 MB, compared with libxml2 and pugixml, and of
// saving it, compared with saving a collection tree of that size.
#include <filesystem>
#include <string>

#include "bench/document_bench.h"
#include "bench/rss_peers.h"
#include "bench/sample_tree.h"
#include "vosmere/collections/opml_writer.h"
#include "vosmere/collections/rss_reader.h"
#include "vosmere/collections/rss_writer.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere::bench {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kDocumentBytes = 10 * 1000 * 1000;

CColctNode* ReadWithVosmere(const std::string& document) {
  CReadBkmarkXML reader;
  reader.LoadXML(document.data(), static_cast<int>(document.size()));
  return reader.DetachColctNode();
}

bool SaveColct(CColctNode* colct, const fs::path& path) {
  CWriteColctRSS writer;
  writer.SetColctNode(colct);
  return SaveDocument(writer, path);
}

bool SaveTree(RNode* root, const fs::path& path) {
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(root);
  return SaveDocument(writer, path);
}

/// The document, the collection made of it, and a path to save to.
class Sample {
 public:
  static Sample& Get() {
    static Sample sample;
    return sample;
  }

  const std::string& document() const { return document_; }
  CColctNode* colct() const { return colct_; }
  const fs::path& path() const { return path_; }

 private:
  Sample() : path_(fs::temp_directory_path() / "vosmere_bench.rss") {
    CColctNode* const made = NewSampleColct(kDocumentBytes);
    document_ = Saved(made);
    DeleteWithLocalTree(made);
    colct_ = ReadWithVosmere(document_);
    // The comparison is only fair if the results are equal.
    for (CColctNode* const peers :
         {ReadColctWithLibxml2(document_), ReadColctWithPugixml(document_)}) {
      if (Saved(peers) != Saved(colct_)) Die("the peers' collections differ");
      DeleteWithLocalTree(peers);
    }
  }
  ~Sample() {
    DeleteWithLocalTree(colct_);
    fs::remove(path_);
  }

  std::string Saved(CColctNode* colct) {
    if (!colct || !SaveColct(colct, path_)) Die("the collection cannot be saved");
    return ReadAll(path_);
  }

  fs::path path_;
  std::string document_;
  CColctNode* colct_ = nullptr;
};

template <CColctNode* (*Read)(const std::string&), Heap Start>
void BM_RssLoad(benchmark::State& state) {
  MeasureLoad(state, Sample::Get().document(), Start, Read, DeleteWithLocalTree);
}

void BM_RssSave(benchmark::State& state) {
  const Sample& sample = Sample::Get();
  MeasureSave(state, sample.path(), sample.document().size(),
              [&] { return SaveColct(sample.colct(), sample.path()); });
}

void BM_TreeSave(benchmark::State& state) {
  const fs::path& path = Sample::Get().path();
  RNode* const tree = NewSampleTree(kDocumentBytes);
  SaveTree(tree, path);
  MeasureSave(state, path, fs::file_size(path), [&] { return SaveTree(tree, path); });
  DeleteTree(tree);
}

BENCHMARK(BM_RssLoad<ReadWithVosmere, Heap::kCold>)->Name("RssLoad/vosmere")->UseManualTime();
BENCHMARK(BM_RssLoad<ReadColctWithLibxml2, Heap::kCold>)->Name("RssLoad/libxml2")->UseManualTime();
BENCHMARK(BM_RssLoad<ReadColctWithPugixml, Heap::kCold>)->Name("RssLoad/pugixml")->UseManualTime();
BENCHMARK(BM_RssLoad<ReadWithVosmere, Heap::kWarm>)->Name("RssLoadWarm/vosmere")->UseManualTime();
BENCHMARK(BM_RssLoad<ReadColctWithLibxml2, Heap::kWarm>)
    ->Name("RssLoadWarm/libxml2")
    ->UseManualTime();
BENCHMARK(BM_RssLoad<ReadColctWithPugixml, Heap::kWarm>)
    ->Name("RssLoadWarm/pugixml")
    ->UseManualTime();
// For comparison: saving a tree whose document has about the same size.
BENCHMARK(BM_RssSave)->Name("RssSave/vosmere")->UseManualTime();
BENCHMARK(BM_TreeSave)->Name("RssSave/tree")->UseManualTime();

}  // namespace
}  // namespace vosmere::bench
