// How the program ends, and how a verb says that it cannot go on.
#pragma once

#include <string>

#include "vosmere/base/types.h"

namespace vosmere::tool {

enum ExitCode : int {
  kFine = 0,
  kBadFile = 1,  ///< a file is not what it should be
  kTrouble = 2,  ///< wrong usage, or something cannot be read or written
};

/// Thrown when a verb cannot go on with a file.
struct Failure {
  int exitCode;
  std::string message;      ///< one printable line
  std::string reason = {};  ///< the message without the file that it is about
  LONG line = 0;            ///< of the file, from 1; 0 when there is no place to name
  LONG column = 0;          ///< from 1; 0 when unknown
};

/// About a file of that name in messages: "name:line:column: error: reason".
inline Failure FileFailure(int exitCode, const std::string& name, const std::string& reason,
                           LONG line = 0, LONG column = 0) {
  std::string place = name + ':';
  if (line > 0) place += std::to_string(line) + ':';
  if (line > 0 && column > 0) place += std::to_string(column) + ':';
  return {exitCode, place + " error: " + reason, reason, line, column};
}

}  // namespace vosmere::tool
