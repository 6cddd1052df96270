// Access to the terminal, implemented by one file per system.
#pragma once

#include <string>

namespace vosmere::tool {

enum class Stream { kInput = 0, kOutput = 1, kErrors = 2 };

/// Whether the standard stream is connected to a terminal.
bool IsTerminal(Stream stream);

/// Whether standard output or error is a terminal that takes colors, and NO_COLOR is not set.
bool TerminalTakesColors(Stream stream);

/// Prints the prompt and reads a line without echo. False if the input ends before the line.
bool ReadSecretLine(const std::string& prompt, std::string& line);

/// Switch standard input or output to binary mode, so that Windows does not convert line ends.
void MakeInputBinary();
void MakeOutputBinary();

}  // namespace vosmere::tool
