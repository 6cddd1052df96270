// The verb "date": shows how the two date readers of the library read a text.
#pragma once

#include <ostream>
#include <string>

namespace vosmere::tool {

/// Prints the results of CKQTime::GetTime and ReadDate for the text, as lines or as one line of
/// JSON. Returns false if ReadDate finds no date in it.
bool ShowDate(const std::string& text, bool asJson, std::ostream& out);

}  // namespace vosmere::tool
