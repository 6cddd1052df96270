// Benchmarks of loading and saving collection trees from 1,000 to 500,000 items: time and peak
// memory, compared with pugixml.
#include <filesystem>
#include <map>
#include <string>

#include "bench/document_bench.h"
#include "bench/opml_peers.h"
#include "vosmere/collections/opml_reader.h"
#include "vosmere/collections/opml_writer.h"
#include "vosmere/cpp.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere::bench {
namespace {

/// Collections with short texts, in folders of 100: a document may have at most 100 MB.
Tree NewTreeOf(int items) {
  Tree tree = NewTree<CFolderNode>(u"top");
  CFolderNode* folder = nullptr;
  for (int i = 0; i < items; ++i) {
    const std::string number = std::to_string(i);
    if (i % 100 == 0) folder = Add<CFolderNode>(tree, "folder " + number);
    SetAddress(*Add<CColctNode>(*folder, "name " + number), "http://a.example/" + number);
  }
  return tree;
}

bool SaveTree(RNode* root, const std::filesystem::path& path) {
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(root);
  return SaveDocument(writer, path);
}

RNode* ReadTree(const std::string& document) {
  CReadColctTreeOPML reader;
  reader.LoadXML(document.data(), static_cast<int>(document.size()));
  return reader.DetachTreeRoot();
}

/// A document of this many items, made on first use.
const std::string& DocumentOf(int items) {
  static std::map<int, std::string> documents;
  std::string& document = documents[items];
  if (!document.empty()) return document;
  const auto path = std::filesystem::temp_directory_path() / "vosmere_size_bench.opml";
  if (!SaveTree(NewTreeOf(items).get(), path)) Die("the tree cannot be saved");
  document = ReadAll(path);
  std::filesystem::remove(path);
  return document;
}

template <RNode* (*Read)(const std::string&)>
void Load(benchmark::State& state, int items) {
  MeasureLoad(state, DocumentOf(items), Heap::kCold, Read, DeleteTree);
}

void Save(benchmark::State& state, int items) {
  const auto path = std::filesystem::temp_directory_path() / "vosmere_size_bench.opml";
  const Tree tree(ReadTree(DocumentOf(items)));
  MeasureSave(state, path, DocumentOf(items).size(), [&] { return SaveTree(tree.get(), path); });
  std::filesystem::remove(path);
}

[[maybe_unused]] const bool registered = [] {
  for (const int items : {1000, 10'000, 100'000, 500'000})
    for (const auto& [name, run] :
         {std::pair("load/vosmere", &Load<ReadTree>),
          std::pair("load/pugixml", &Load<ReadWithPugixml>), std::pair("save/vosmere", &Save)})
      benchmark::RegisterBenchmark(("Size/" + std::to_string(items) + "/" + name).c_str(), run,
                                   items)
          ->UseManualTime()
          ->MinTime(0.05)
          ->Unit(benchmark::kMillisecond);
  return true;
}();

}  // namespace
}  // namespace vosmere::bench
