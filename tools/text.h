// The library's UTF-16 and the tool's UTF-8.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "vosmere/cpp.h"

namespace vosmere::tool {

SystemString ToWide(const std::string& utf8);

/// As the library reads paths: a backslash separates everywhere.
std::filesystem::path PathOf(std::string utf8);

/// UTF-8 that a terminal can be given: what would steer it, or reorder the line, is escaped.
std::string Printable(const WChar* text);
std::string Printable(const std::string& utf8);

}  // namespace vosmere::tool
