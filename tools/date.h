// Date texts, read by both readers of the library.
#pragma once

#include <ostream>
#include <string>

namespace vosmere::tool {

/// Prints what CKQTime::GetTime and what ReadDate answer to the text. False when ReadDate finds no
/// date in it.
bool ShowDate(const std::string& text, std::ostream& out);

}  // namespace vosmere::tool
