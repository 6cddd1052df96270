// Whether documents load, and whether they come back from a save.
#pragma once

#include <string>

#include "vosmere/base/document_error.h"

namespace vosmere::tool {

struct CheckOptions {
  bool all = false;     ///< names every item that a warning is about
  bool strict = false;  ///< a warning counts like a fault
  bool json = false;    ///< prints a line of JSON
  bool quiet = false;   ///< prints only why a file cannot be read
};

/// Prints what is found about a file and returns the exit code.
int Check(const std::string& file, const CheckOptions& options);

/// Why nothing would come back of a saved copy, on a line.
std::string WhyNotSaved(const DocumentError& error);

}  // namespace vosmere::tool
