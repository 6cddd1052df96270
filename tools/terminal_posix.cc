// The terminal on Linux.
#include <bsd/readpassphrase.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include "tools/terminal.h"

namespace vosmere::tool {

bool IsTerminal(Stream stream) {
  return isatty(static_cast<int>(stream)) == 1;
}

bool TerminalTakesColors(Stream stream) {
  const char* const no = getenv("NO_COLOR");
  const char* const kind = getenv("TERM");
  return (!no || !*no) && IsTerminal(stream) && kind && strcmp(kind, "dumb") != 0;
}

bool ReadSecretLine(const std::string& prompt, std::string& line) {
  char typed[1024];
  const bool read = readpassphrase(prompt.c_str(), typed, sizeof typed, RPP_ECHO_OFF) != nullptr;
  if (read) line = typed;
  explicit_bzero(typed, sizeof typed);
  return read;
}

void MakeInputBinary() {}

void MakeOutputBinary() {}

}  // namespace vosmere::tool
