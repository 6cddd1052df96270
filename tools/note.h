// Exporting an item of a document as a page.
#pragma once

#include <string>

namespace vosmere::tool {

struct NoteOptions {
  std::string in;
  std::string item;  ///< its name, alone or with those of its folders, or its identity
  std::string out;
};

/// Exports the item and returns the exit code. Throws Failure, also when several are meant.
int Note(const NoteOptions& options);

}  // namespace vosmere::tool
