// The verbs of the command line: their options, their help, and what they run.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace vosmere::tool {

// Each adds some verbs. When one of them has run, `exitCode` is its exit code.

void AddDocumentVerbs(CLI::App& app, int& exitCode);  ///< for one document
void AddExchangeVerbs(CLI::App& app, int& exitCode);  ///< for two documents, or other programs
void AddStoreVerbs(CLI::App& app, int& exitCode);

// For the files with these functions.

inline constexpr char kExitCodes[] =
    "Exit codes: 0 success; 1 a document is invalid, or does not have what was asked for; 2 wrong "
    "usage, or a file cannot be read or written.\n"
    "The file name - means standard input or output; ./- is a file of that name.";

/// What many verbs take.
struct Files {
  std::string in, out;
  bool json = false;
};

/// Lets the verb run `work`, which returns the exit code. An exception is printed and gives the
/// exit code.
void OnRun(CLI::App& verb, int& exitCode, std::function<int()> work);

}  // namespace vosmere::tool
