// The command-line tool in tests, run as users and scripts run it.
#pragma once

#include <cstdlib>
#include <string>

#include "tests/support/files.h"

namespace vosmere::test {

struct Outcome {
  int exitCode;
  std::string bytes;  ///< the standard output
  std::string out;    ///< the same as text
  std::string errors;
};

/// A path as one argument.
inline std::string Quoted(std::filesystem::path path) {
  return '"' + path.make_preferred().string() + '"';
}

/// Runs the tool with arguments as in a shell. `before` is put before it in the command.
inline Outcome RunTool(const std::string& arguments, const std::string& before = "cd . && ") {
  const TempFolder folder;
  // Without a command before it, the shell on Windows would remove the first and the last quote.
  const int status = std::system((before + Quoted(VOSMERE_TOOL) + ' ' + arguments + " >" +
                                  Quoted(folder / "out") + " 2>" + Quoted(folder / "errors"))
                                     .c_str());
  const std::string bytes = ReadBytes(folder / "out");
  std::string out = bytes, errors = ReadBytes(folder / "errors");
  std::erase(out, '\r');
  std::erase(errors, '\r');
  return {status > 255 ? status / 256 : status, bytes, out, errors};
}

}  // namespace vosmere::test
