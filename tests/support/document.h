// Documents in tests: what a writer wrote, what a reader read, and what was traced on the way.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "tests/support/failing_memory.h"
#include "tests/support/files.h"
#include "tests/support/traces.h"
#include "tests/support/tree.h"
#include "vosmere/base/build_number.h"
#include "vosmere/base/internal/no_memory.h"
#include "vosmere/collections/opml_reader.h"
#include "vosmere/collections/opml_writer.h"
#include "vosmere/collections/rss_reader.h"
#include "vosmere/collections/rss_writer.h"
#include "vosmere/cpp/own.h"

namespace vosmere::test {

/// The bytes that a writer saves; "(not saved)" if it fails.
inline std::string Saved(CWriteXML& writer) {
  const TempFolder folder;
  return writer.SaveToFile(W(folder / "document.xml")) ? ReadBytes(folder / "document.xml")
                                                       : "(not saved)";
}

/// A file of tests/data with this version of the library in place of the version in it.
inline std::string Golden(const std::string& name) {
  std::string golden = TestData(name);
  const std::string build = std::to_string(1000 + kBuildNumber).substr(1);
  const std::size_t version = golden.find("v0.0.0");
  for (std::size_t i = 0; version != golden.npos && i < 3; ++i)
    golden[version + 1 + 2 * i] = build[i];
  return golden;
}

inline std::string SavedOpml(RNode* root) {
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(root);
  return Saved(writer);
}

inline bool Load(CReadXML& reader, const std::string& bytes) {
  return reader.LoadXML(bytes.data(), static_cast<int>(bytes.size()));
}

/// The tree of a document that loads; null if it does not load or has none.
inline TreePtr ReadOpml(const std::string& bytes) {
  CReadColctTreeOPML reader;
  return TreePtr(Load(reader, bytes) ? reader.DetachTreeRoot() : nullptr);
}

using ColctPtr = Collection;

/// A collection named "c" with an identity, around a local tree in the notation of Tree().
inline ColctPtr ColctOf(const std::string& tree) {
  ColctPtr colct(CColctNode::New());
  colct->SetName(W("c"));
  colct->SetUUID(W("c"));
  colct->SetLocRNodeRoot(Tree(tree).release());
  return colct;
}

inline std::string SavedRss(CColctNode* colct) {
  CWriteColctRSS writer;
  writer.SetColctNode(colct);
  return Saved(writer);
}

/// The collection of a document that loads; null if it does not load or has none.
inline ColctPtr ReadRss(const std::string& bytes) {
  CReadBkmarkXML reader;
  return ColctPtr(Load(reader, bytes) ? reader.DetachColctNode() : nullptr);
}

/// A document around the given content of a channel.
inline std::string Rss(const std::string& channel) {
  return "<rss version=\"2.0\" xmlns:vsm=\"v\" xmlns:dc=\"d\" xmlns:sx=\"s\"><channel>" + channel +
         "</channel></rss>";
}

/// Loads with the first, second, ... allocation failing, until none fails. Every load but the last
/// must fail for lack of memory, and nothing may be leaked.
template <class NewReader>
void LoadAtEachFailure(NewReader newReader, const std::string& document) {
  Load(*newReader(), document);  // what the system allocates once
  const long before = LiveAllocations();
  bool loaded = false;
  for (long successes = 0; !loaded; ++successes) {
    ASSERT_LT(successes, 1000);
    const auto reader = newReader();
    const FailingMemory memory(successes);
    loaded = Load(*reader, document);
    EXPECT_EQ(reader->LastError().fault,
              memory.Failed() ? DocumentFault::kNoMemory : DocumentFault::kNone)
        << successes;
  }
  EXPECT_EQ(LiveAllocations(), before);
}

/// Writes with only the first, second, ... allocation failing, until none fails. The result of
/// `write` must be complete or null; it may also throw std::bad_alloc.
template <class Write>
void WriteAtEachFailure(Write write) {
  const std::string whole = OwnedBstr(write()).utf8();
  const auto check = [&](BSTR written, bool failed) {
    const OwnedBstr text(written);
    EXPECT_EQ(written || !failed ? text.utf8() : whole, whole);
  };
  AtEachFailure([&] { return NullIfNoMemory(write); }, check, Failures::kOne);
}

/// A document around the given outlines.
inline std::string Opml(const std::string& body) {
  return "<opml version=\"2.0\" xmlns:vsm=\"v\" "
         "xmlns:sx=\"s\"><head><title>root</title></head><body>" +
         body + "</body></opml>";
}

inline CColctNode* ColctAt(const RNode* link) {
  return static_cast<CColctNode*>(link->item);
}

}  // namespace vosmere::test
