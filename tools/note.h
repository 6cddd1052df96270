// The verb "note": exports an item of a document as an HTML page.
#pragma once

#include <string>

namespace vosmere::tool {

struct NoteOptions {
  std::string in;
  std::string item;  ///< the item's identity or name, or the names of its folders and its own
  std::string out;
  bool json = false;  ///< prints which item was exported
};

/// Exports the item and returns the exit code. Throws Failure, also if several items match.
int Note(const NoteOptions& options);

}  // namespace vosmere::tool
