// Benchmarks of loading and saving a document, compared with reading the same items from libxml2's
// document and writing them with its xmlTextWriter. A type describes the document:
//
//     struct ShelfDocument : PeerItems {
//       static constexpr const char* kName = "Shelf";
//       static constexpr int kRounds = 1;    // documents per measurement
//       using Data = TList<CBook*>*;
//       static Data New();                   // the content of the measured document
//       static void Free(Data data);
//       static Data Read(const std::string& document);
//       static bool Save(Data data, const std::filesystem::path& path);
//       Data ReadPeer(Libxml2Dom::Node root);
//       static void WritePeer(PeerWriter& writer, Data data);  // everything after the declaration
//     };
//     const bool kShelf = RegisterDocument<ShelfDocument>();
#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

#include "bench/document_bench.h"
#include "bench/peer_dom.h"
#include "bench/peer_items.h"
#include "bench/peer_writer.h"
#include "vosmere/xml/read_xml.h"

namespace vosmere::bench {

template <class Reader, auto Detach>
auto ReadWith(const std::string& document) {
  Reader reader;
  reader.LoadXML(document.data(), static_cast<int>(document.size()));
  return (reader.*Detach)();
}

template <class Writer, auto Set, class Data>
bool SaveWith(Data data, const std::filesystem::path& path) {
  Writer writer;
  (writer.*Set)(data);
  return SaveDocument(writer, path);
}

template <class Document>
typename Document::Data ReadWithPeer(const std::string& document) {
  const Libxml2Dom::Loaded dom(document);
  return Document().ReadPeer(dom.Root());
}

template <class Document>
bool SaveWithPeer(typename Document::Data data, const std::filesystem::path& path) {
  PeerWriter writer(path.c_str());
  if (!writer.IsOpen()) return false;
  writer.StartDocument();
  Document::WritePeer(writer, data);
  return writer.EndDocument();
}

/// The document, the data made of it, and a path to save to.
template <class Document>
class StoredSample {
 public:
  using Data = typename Document::Data;

  static StoredSample& Get() {
    static StoredSample sample;
    return sample;
  }

  const std::string& document() const { return document_; }
  Data data() const { return data_; }
  const std::filesystem::path& path() const { return path_; }

 private:
  StoredSample()
      : path_(std::filesystem::temp_directory_path() /
              ("vosmere_bench-" + std::to_string(getpid()) + ".xml")),
        data_(Document::New()) {
    document_ = Saved(data_);
    // The comparison is only fair if the results are equal.
    Check(ReadWithPeer<Document>(document_));
    if (!SaveWithPeer<Document>(data_, path_)) Die("libxml2 cannot save");
    Check(Document::Read(ReadAll(path_)));
    std::filesystem::remove(path_);
  }
  ~StoredSample() { Document::Free(data_); }

  std::string Saved(Data data) {
    if (!Document::Save(data, path_)) Die("the document cannot be saved");
    return ReadAll(path_);
  }
  void Check(Data peers) {
    const Data ours = Document::Read(document_);
    if (Saved(peers) != Saved(ours)) Die("the peers' documents differ");
    Document::Free(ours);
    Document::Free(peers);
  }

  std::filesystem::path path_;
  Data data_;
  std::string document_;
};

template <class Document, typename Document::Data (*Read)(const std::string&), Heap Start>
void BM_StoredLoad(benchmark::State& state) {
  const std::string& document = StoredSample<Document>::Get().document();
  MeasureLoad(
      state, document, Start,
      [](const std::string& text) {
        for (int round = 1; round < Document::kRounds; ++round) Document::Free(Read(text));
        return Read(text);
      },
      Document::Free);
  state.SetBytesProcessed(state.iterations() * Document::kRounds * document.size());
}

template <class Document, bool (*Save)(typename Document::Data, const std::filesystem::path&)>
void BM_StoredSave(benchmark::State& state) {
  const StoredSample<Document>& sample = StoredSample<Document>::Get();
  MeasureSave(state, sample.path(), Document::kRounds * sample.document().size(), [&] {
    bool saved = true;
    for (int round = 0; round < Document::kRounds; ++round)
      saved = Save(sample.data(), sample.path()) && saved;
    return saved;
  });
  std::filesystem::remove(sample.path());
}

template <class Document>
bool RegisterDocument() {
  const std::string name = Document::kName;
  const auto add = [](const std::string& what, auto measure) {
    benchmark::RegisterBenchmark(what.c_str(), measure)->UseManualTime();
  };
  constexpr auto* kPeer = ReadWithPeer<Document>;
  add(name + "Load/vosmere", BM_StoredLoad<Document, Document::Read, Heap::kCold>);
  add(name + "Load/libxml2", BM_StoredLoad<Document, kPeer, Heap::kCold>);
  add(name + "LoadWarm/vosmere", BM_StoredLoad<Document, Document::Read, Heap::kWarm>);
  add(name + "LoadWarm/libxml2", BM_StoredLoad<Document, kPeer, Heap::kWarm>);
  add(name + "Save/vosmere", BM_StoredSave<Document, Document::Save>);
  add(name + "Save/libxml2", BM_StoredSave<Document, SaveWithPeer<Document>>);
  return true;
}

}  // namespace vosmere::bench
