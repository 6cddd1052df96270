// The terminal, where there is one; a file per system keeps it.
#pragma once

#include <string>

namespace vosmere::tool {

enum class Stream { kInput = 0, kOutput = 1, kErrors = 2 };

bool IsTerminal(Stream stream);

/// A line typed without echo behind the prompt. False when the input ends before it.
bool ReadSecretLine(const std::string& prompt, std::string& line);

/// Bytes that are read and written from now on stay what they are.
void MakeInputBinary();
void MakeOutputBinary();

}  // namespace vosmere::tool
