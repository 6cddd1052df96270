// What a document holds, for people and for scripts.
#pragma once

#include <ostream>
#include <span>

#include "tools/document_content.h"

namespace vosmere::tool {

/// Something that the summary below a document counts.
struct Count {
  const char* what;    ///< a kind of record, or the field of a mark
  const char* plural;  ///< as the summary names it
};

/// A line for each record, and a summary unless there is nothing to count. `what` stands for the
/// kind of the whole.
void Show(const Record& content, std::string_view what, std::span<const Count> counts,
          std::ostream& out);

/// One JSON value in ASCII: every record with its kind, its fields and, where it may have any, its
/// children.
void ShowJson(const Record& content, std::ostream& out);

}  // namespace vosmere::tool
