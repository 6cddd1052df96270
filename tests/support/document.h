// Documents in tests: what a writer wrote, what a reader read, and what was traced on the way.
#pragma once

#include <string>
#include <utility>

#include "tests/support/files.h"
#include "tests/support/traces.h"
#include "tests/support/tree.h"
#include "vosmere/xml/opml_reader.h"
#include "vosmere/xml/opml_writer.h"

namespace vosmere::test {

/// The bytes that a writer saves; "(not saved)" when it does not.
inline std::string Saved(CWriteXML& writer) {
  const TempFolder folder;
  return writer.SaveToFile(W(folder / "document.xml")) ? ReadBytes(folder / "document.xml")
                                                       : "(not saved)";
}

inline std::string SavedOpml(RNode* root) {
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(root);
  return Saved(writer);
}

inline bool Load(CReadXML& reader, const std::string& bytes) {
  return reader.LoadXML(bytes.data(), static_cast<int>(bytes.size()));
}

/// The tree of a document that loads; null when it does not or has none.
inline TreePtr ReadOpml(const std::string& bytes) {
  CReadColctTreeOPML reader;
  return TreePtr(Load(reader, bytes) ? reader.DetachTreeRoot() : nullptr);
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
