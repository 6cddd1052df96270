// Benchmarks of loading and saving a collection tree of 10 MB, compared with libxml2 and pugixml.
#include <filesystem>
#include <string>

#include "bench/document_bench.h"
#include "bench/opml_peers.h"
#include "bench/sample_tree.h"
#include "vosmere/collections/opml_reader.h"
#include "vosmere/collections/opml_writer.h"
#include "vosmere/cpp/documents.h"
#include "vosmere/platform/internal/xml_document.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere::bench {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kDocumentBytes = 10 * 1000 * 1000;
constexpr double kPeakLimit = 6;  // bytes of memory per byte of the document, including the items

bool SaveWithVosmere(RNode* root, const char* path) {
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(root);
  return SaveDocument(writer, path);
}

bool ParseWithVosmere(const std::string& bytes) {
  XmlDocument document;
  document.LoadBytes(bytes.data(), static_cast<int>(bytes.size()));
  return static_cast<bool>(document.Root());
}

RNode* ReadWithVosmere(const std::string& document) {
  CReadColctTreeOPML reader;
  reader.LoadXML(document.data(), static_cast<int>(document.size()));
  return reader.DetachTreeRoot();
}

/// The document, the tree made of it, and a path to save to.
class Sample {
 public:
  static Sample& Get() {
    static Sample sample;
    return sample;
  }

  const std::string& document() const { return document_; }
  RNode* tree() const { return tree_; }
  const char* path() const { return path_.c_str(); }

 private:
  Sample() : path_(fs::temp_directory_path() / "vosmere_bench.opml") {
    RNode* const made = NewSampleTree(kDocumentBytes);
    document_ = Saved(made);
    DeleteTree(made);
    tree_ = ReadWithVosmere(document_);
    CheckPeers();
  }
  ~Sample() {
    DeleteTree(tree_);
    fs::remove(path_);
  }

  std::string Saved(RNode* root) {
    if (!root || !SaveWithVosmere(root, path())) Die("the tree cannot be saved");
    return ReadAll(path_);
  }

  // The comparison is only fair if the results are equal.
  void CheckPeers() {
    const std::string expected = Saved(tree_);
    const auto check = [&](RNode* root) {
      if (Saved(root) != expected) Die("the peers' trees differ");
      DeleteTree(root);
    };
    check(ReadWithLibxml2(document_));
    check(ReadWithPugixml(document_));
    fs::remove(path_);
    if (!SaveWithLibxml2(tree_, path())) Die("libxml2 cannot save");
    check(ReadWithVosmere(ReadAll(path_)));
    fs::remove(path_);
    if (!PugixmlDocument(document_).Save(path())) Die("pugixml cannot save");
    check(ReadWithVosmere(ReadAll(path_)));
  }

  fs::path path_;
  std::string document_;
  RNode* tree_ = nullptr;
};

template <RNode* (*Read)(const std::string&), Heap Start>
void BM_OpmlLoad(benchmark::State& state) {
  MeasureLoad(state, Sample::Get().document(), Start, Read, DeleteTree);
  if (Read == ReadWithVosmere)
    state.SetLabel(state.counters["peak/byte"] <= kPeakLimit ? "peak at most 6: yes"
                                                             : "peak at most 6: NO");
}

template <bool (*Parse)(const std::string&)>
void BM_OpmlParse(benchmark::State& state) {
  MeasureLoad(state, Sample::Get().document(), Heap::kCold, Parse, [](bool) {});
}

template <bool (*Save)(RNode*, const char*)>
void BM_OpmlSave(benchmark::State& state) {
  const Sample& sample = Sample::Get();
  MeasureSave(state, sample.path(), sample.document().size(),
              [&] { return Save(sample.tree(), sample.path()); });
}

void BM_OpmlSaveReady(benchmark::State& state) {
  const Sample& sample = Sample::Get();
  const PugixmlDocument ready(sample.document());
  MeasureSave(state, sample.path(), sample.document().size(),
              [&] { return ready.Save(sample.path()); });
}

// The layer beside the plain calls, which do the same work.

RNode* LoadByLayer(const std::string& document) {
  Result<Tree> tree = Load<Tree>(Bytes(document));
  return tree ? tree->release() : nullptr;
}

bool SaveByLayer(RNode* root, const char* path) {
  Tree tree(root);
  const bool isSaved = static_cast<bool>(Save(path, tree));
  static_cast<void>(tree.release());
  return isSaved;
}

/// What the layer does without its care for the document: the plain bytes, saved safely.
bool SaveSafely(RNode* root, const char* path) {
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(root);
  ConvertedText bytes;
  int length = 0;
  if (!writer.GetXMLBytes(Out(bytes), &length)) return false;
  const FilePiece piece{bytes.get(), static_cast<std::size_t>(length)};
  return SafeSave(Wide(path), &piece, 1, nullptr, nullptr, nullptr);
}

template <bool (*Save)(RNode*)>
void BM_OpmlSaveBytes(benchmark::State& state) {
  RNode* const tree = Sample::Get().tree();
  for (auto _ : state) {
    const bool saved = Timed(state, [&] { return Save(tree); });
    if (!saved) state.SkipWithError("the tree cannot be saved");
  }
}

bool SaveBytesByLayer(RNode* root) {
  Tree tree(root);
  const bool isSaved = static_cast<bool>(SaveToBytes(tree));
  static_cast<void>(tree.release());
  return isSaved;
}

bool SaveBytesWithVosmere(RNode* root) {
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(root);
  ConvertedText bytes;
  int length = 0;
  return writer.GetXMLBytes(Out(bytes), &length);
}

BENCHMARK(BM_OpmlLoad<LoadByLayer, Heap::kWarm>)->Name("LayerLoad/vosmere")->UseManualTime();
BENCHMARK(BM_OpmlLoad<ReadWithVosmere, Heap::kWarm>)->Name("LayerLoad/plain")->UseManualTime();
BENCHMARK(BM_OpmlSave<SaveByLayer>)->Name("LayerSave/vosmere")->UseManualTime();
BENCHMARK(BM_OpmlSave<SaveWithVosmere>)->Name("LayerSave/plain")->UseManualTime();
BENCHMARK(BM_OpmlSave<SaveSafely>)->Name("LayerSave/safe")->UseManualTime();
BENCHMARK(BM_OpmlSaveBytes<SaveBytesByLayer>)->Name("LayerSaveBytes/vosmere")->UseManualTime();
BENCHMARK(BM_OpmlSaveBytes<SaveBytesWithVosmere>)->Name("LayerSaveBytes/plain")->UseManualTime();

BENCHMARK(BM_OpmlLoad<ReadWithVosmere, Heap::kCold>)->Name("OpmlLoad/vosmere")->UseManualTime();
BENCHMARK(BM_OpmlLoad<ReadWithLibxml2, Heap::kCold>)->Name("OpmlLoad/libxml2")->UseManualTime();
BENCHMARK(BM_OpmlLoad<ReadWithPugixml, Heap::kCold>)->Name("OpmlLoad/pugixml")->UseManualTime();
BENCHMARK(BM_OpmlLoad<ReadWithVosmere, Heap::kWarm>)->Name("OpmlLoadWarm/vosmere")->UseManualTime();
BENCHMARK(BM_OpmlLoad<ReadWithLibxml2, Heap::kWarm>)->Name("OpmlLoadWarm/libxml2")->UseManualTime();
BENCHMARK(BM_OpmlLoad<ReadWithPugixml, Heap::kWarm>)->Name("OpmlLoadWarm/pugixml")->UseManualTime();
// Only parsing the XML, without making items.
BENCHMARK(BM_OpmlParse<ParseWithVosmere>)->Name("OpmlParse/vosmere")->UseManualTime();
BENCHMARK(BM_OpmlParse<ParseWithLibxml2>)->Name("OpmlParse/libxml2")->UseManualTime();
BENCHMARK(BM_OpmlParse<ParseWithPugixml>)->Name("OpmlParse/pugixml")->UseManualTime();
BENCHMARK(BM_OpmlSave<SaveWithVosmere>)->Name("OpmlSave/vosmere")->UseManualTime();
BENCHMARK(BM_OpmlSave<SaveWithLibxml2>)->Name("OpmlSave/libxml2")->UseManualTime();
BENCHMARK(BM_OpmlSaveReady)->Name("OpmlSave/pugixml")->UseManualTime();

}  // namespace
}  // namespace vosmere::bench
