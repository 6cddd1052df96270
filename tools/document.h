// A document of any kind, from a file.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "tools/check_findings.h"
#include "tools/failure.h"
#include "tools/kind.h"
#include "vosmere/base/document_error.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

/// The failure that the library reports for a file of that name in messages.
Failure FailureOf(const std::string& name, const DocumentError& error);
/// Whether the fault is not the file's own.
bool IsTrouble(DocumentFault fault);

class Document {
 public:
  /// Loads a document of any known kind from a file, or for "-" from the standard input, which is
  /// opened and parsed once. Reports to `findings`, which may be null, what the file holds and the
  /// loaded document does not. Throws Failure.
  explicit Document(const std::string& file, Findings* findings = nullptr);

  /// For people.
  void Show(std::ostream& out) const;
  /// For scripts: one JSON value in ASCII.
  void ShowJson(std::ostream& out) const;

  /// Shows all items in document order, which stay the document's.
  void ForEachItem(const ItemVisit& visit) const { loaded_->ForEachItem(visit); }

  /// Saves to a file, or to memory for null, loads that, and reports what comes back otherwise. The
  /// error says why nothing would come back, and the findings then name the items that are to
  /// blame. Once, for a document that was loaded with findings; it is given up on the way, as two
  /// at once would take twice the memory.
  DocumentError Save(const WChar* path, Findings& findings);

 private:
  void Explain(const Record& content, Findings& findings) const;

  const Kind* kind_ = nullptr;
  std::unique_ptr<Loaded> loaded_;
  std::string disarmed_;  ///< empty when there is nothing to disarm
};

}  // namespace vosmere::tool
