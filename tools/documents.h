// The documents that the tool knows. A new one is a class derived from Document and a row in the
// table of documents.cc.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "tools/findings.h"
#include "vosmere/xml/document_error.h"

namespace vosmere::tool {

/// How the program ends.
enum ExitCode : int {
  kFine = 0,
  kBadFile = 1,  ///< a file is not what it should be
  kTrouble = 2,  ///< wrong usage, or something cannot be read or written
};

/// Thrown when a verb cannot go on with a file.
struct Failure {
  int exitCode;
  std::string message;  ///< one printable line
};

/// The failure that the library reports for `file`.
Failure FailureOf(const std::string& file, const DocumentError& error);
/// Whether the fault is not the file's own.
bool IsTrouble(DocumentFault fault);

/// A loaded document.
class Document {
 public:
  Document() = default;
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;
  virtual ~Document() = default;

  /// For people.
  virtual void Show(std::ostream& out) = 0;
  /// For scripts: one JSON value in ASCII.
  virtual void ShowJson(std::ostream& out) = 0;

  /// Reports what the file holds and the loaded document does not.
  virtual void Audit(Findings& findings) = 0;
  /// Saves to memory, loads that, and reports what comes back otherwise. The error says why nothing
  /// would come back, and the findings then name the items that are to blame.
  virtual DocumentError Rehearse(Findings& findings) = 0;
  /// Saves, and loads the saved file back. Without an error it holds all that was written.
  virtual DocumentError Save(const WChar* path) = 0;
};

/// Loads a document of any known kind. Throws Failure.
std::unique_ptr<Document> Open(const std::string& file);

}  // namespace vosmere::tool
