// The verb "show": prints the content of a document for people, or as JSON for scripts.
#pragma once

#include <ostream>
#include <span>
#include <string>

#include "tools/document_content.h"

namespace vosmere::tool {

/// Something that is counted in the summary below a document.
struct Count {
  const char* what;  ///< a kind of record, or the name of a field that is shown as a mark
  const char* name;  ///< in the summary, for Counted
};

/// The name of a record, and of its fields those that are shown on its line; begins with a blank,
/// or is empty for a record without fields.
std::string LineOf(const Record& record);

/// Prints a line for each record, and a summary unless `counts` is empty. `what` is printed as the
/// kind of the document.
void Show(const Record& content, std::string_view what, std::span<const Count> counts,
          std::ostream& out);

/// Prints one JSON value: every record is an object with its kind, its fields and, if it
/// is a container, its children.
void ShowJson(const Record& content, std::ostream& out);

}  // namespace vosmere::tool
