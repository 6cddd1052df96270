// The verb "date": shows how the two date readers of the library read texts.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace vosmere::tool {

/// "1994-11-06T08:49:37Z"
std::string TimeText(std::int64_t seconds);

/// Prints the results of CKQTime::GetTime and ReadDate for each text, as lines or as one line of
/// JSON; "-" are the lines of standard input. Returns the exit code, kBadFile if ReadDate finds no
/// date in one of them.
int ShowDates(const std::vector<std::string>& texts, bool asJson, std::ostream& out);

}  // namespace vosmere::tool
