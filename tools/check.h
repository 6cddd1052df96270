// Whether documents load, and what a save loses.
#pragma once

#include <string>

#include "vosmere/cpp.h"

namespace vosmere::tool {

inline constexpr std::size_t kPlacesShown = 3;

struct CheckOptions {
  bool all = false;     ///< names every item that a warning is about
  bool strict = false;  ///< a warning counts like a fault
  bool json = false;    ///< prints a line of JSON
  bool quiet = false;   ///< prints only why a file cannot be read
};

/// Prints what is found about a file and returns the exit code.
int Check(const std::string& file, const CheckOptions& options);

/// A line for each.
void PrintWarnings(std::ostream& out, const std::string& name, const Losses& losses);

}  // namespace vosmere::tool
