// The verb "check": whether documents load, and what saving them would lose.
#pragma once

#include <string>
#include <vector>

#include "vosmere/cpp.h"

namespace vosmere::tool {

/// The number of places shown for each warning.
inline constexpr std::size_t kPlacesShown = 3;

struct CheckOptions {
  bool all = false;     ///< list every place of a warning, not only the first ones
  bool strict = false;  ///< exit with 1 if there are warnings
  bool json = false;    ///< print a line of JSON
  bool sarif = false;   ///< print a SARIF log, which editors read
  bool quiet = false;   ///< print nothing, except why a file cannot be read
};

/// Checks files, prints the results and returns the highest exit code.
int Check(const std::vector<std::string>& files, const CheckOptions& options);

/// Prints a line for each loss. `name` is the name of the file in messages.
void PrintWarnings(std::ostream& out, const std::string& name, const Losses& losses);

}  // namespace vosmere::tool
