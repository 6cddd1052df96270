// Exporting an item of a document as a page.
#pragma once

#include <string>

namespace vosmere::tool {

struct NoteOptions {
  std::string in;
  std::string item;  ///< its name or its identity
  std::string out;
};

/// Exports the first item of that name or identity and returns the exit code. Throws Failure.
int Note(const NoteOptions& options);

}  // namespace vosmere::tool
