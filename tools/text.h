// Printable texts, and the names of files.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "vosmere/cpp.h"

namespace vosmere::tool {

/// The path of a file from a command-line argument, which is in the system's encoding (UTF-8 on
/// Windows).
std::filesystem::path PathOf(const std::string& name);

/// Whether the name means standard input or output, not a file.
inline bool IsStandard(const std::string& name) {
  return name == "-";
}
/// The name of an input file for messages.
std::string InputName(const std::string& name);
/// The name of an output file for messages.
std::string OutputName(const std::string& name);

/// UTF-8 that is safe to print on a terminal: control characters and characters that reorder a line
/// are replaced by escapes like those of JSON.
std::string Printable(const WChar* text);
std::string Printable(const std::string& utf8);

/// A number with what it counts, where `*` is an "s" unless it is one: "1 folder", "2 folders".
std::string Counted(long long count, std::string_view what);

}  // namespace vosmere::tool
