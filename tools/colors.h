// Colors in messages and output.
#pragma once

#include <string>

#include "tools/terminal.h"

namespace vosmere::tool {

enum class Colors { kAuto, kAlways, kNever };

/// What --color says. kAuto, which is the default, asks the terminal.
void SetColors(Colors colors);

/// Whether what is printed to this stream is colored.
bool TakesColors(Stream stream);

constexpr char kRed[] = "\033[31m";
constexpr char kGreen[] = "\033[32m";
constexpr char kYellow[] = "\033[33m";

/// The text in this color, if the stream takes colors.
std::string Colored(const std::string& text, const char* color, Stream stream);

/// A message like "file:1:2: error: reason", whose kind ("error", "warning") gets a color if the
/// stream takes colors.
std::string ColoredMessage(std::string message, Stream stream);

}  // namespace vosmere::tool
