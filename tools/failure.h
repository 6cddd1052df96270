// Exit codes, and the exception that ends a verb.
#pragma once

#include <string>

#include "vosmere/base/types.h"

namespace vosmere::tool {

enum ExitCode : int {
  kFine = 0,
  kBadFile = 1,  ///< a document is invalid, or does not have what was asked for
  kTrouble = 2,  ///< wrong usage, or something cannot be read or written
};

/// Thrown when a verb cannot continue with a file.
struct Failure {
  int exitCode;
  std::string message;       ///< one printable line
  std::string reason = {};   ///< the message without the name of the file
  LONG line = 0;             ///< in the file, from 1; 0 if unknown
  LONG column = 0;           ///< from 1; 0 if unknown
  std::string excerpt = {};  ///< the line with a caret, see Excerpt; empty if unknown
};

/// A failure with the message "name:line:column: error: reason". Unknown parts are left out.
inline Failure FileFailure(int exitCode, const std::string& name, const std::string& reason,
                           LONG line = 0, LONG column = 0) {
  std::string place = name + ':';
  if (line > 0) place += std::to_string(line) + ':';
  if (line > 0 && column > 0) place += std::to_string(column) + ':';
  return {exitCode, place + " error: " + reason, reason, line, column};
}

}  // namespace vosmere::tool
