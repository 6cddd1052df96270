// A document of any kind, from a file.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "tools/failure.h"
#include "tools/findings.h"
#include "tools/kind.h"
#include "vosmere/base/document_error.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

/// The failure that the library reports for `file`.
Failure FailureOf(const std::string& file, const DocumentError& error);
/// Whether the fault is not the file's own.
bool IsTrouble(DocumentFault fault);

class Document {
 public:
  /// Loads a document of any known kind. Throws Failure.
  explicit Document(const std::string& file);

  /// For people.
  void Show(std::ostream& out) const;
  /// For scripts: one JSON value in ASCII.
  void ShowJson(std::ostream& out) const;

  /// The first item in document order, which stays the document's; null when there is none.
  CBaseNode* Find(const ItemTest& isMeant) const { return loaded_->Find(isMeant); }

  /// Reports what the file holds and the loaded document does not.
  void Audit(Findings& findings) const;
  /// Saves to memory, loads that, and reports what comes back otherwise. The error says why nothing
  /// would come back, and the findings then name the items that are to blame.
  DocumentError Rehearse(Findings& findings) const;
  /// Saves, and loads the saved file back. Without an error it holds all that was written.
  DocumentError Save(const WChar* path) const;

 private:
  void Explain(const Record& content, Findings& findings) const;

  std::string file_;
  Source source_;
  const Kind* kind_;
  std::unique_ptr<Loaded> loaded_;
};

}  // namespace vosmere::tool
