// Texts for people, and names of files.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "vosmere/cpp.h"

namespace vosmere::tool {

/// A file by the name that the program was given for it, in the system's own bytes (UTF-8 on
/// Windows).
std::filesystem::path PathOf(const std::string& name);

/// Whether it names the standard input or output rather than a file.
inline bool IsStandard(const std::string& name) {
  return name == "-";
}
/// A file to be read, in messages.
std::string InputName(const std::string& name);
/// A file to be written, in messages.
std::string OutputName(const std::string& name);

/// UTF-8 that a terminal can be given: what would steer it, or reorder the line, is escaped.
std::string Printable(const WChar* text);
std::string Printable(const std::string& utf8);

}  // namespace vosmere::tool
