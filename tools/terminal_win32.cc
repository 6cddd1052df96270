// The terminal on Windows.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>

#include "tools/terminal.h"

namespace vosmere::tool {

static HANDLE HandleOf(Stream stream) {
  constexpr DWORD kHandles[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  return GetStdHandle(kHandles[static_cast<int>(stream)]);
}

bool IsTerminal(Stream stream) {
  DWORD mode;
  return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

bool TerminalTakesColors(Stream stream) {
  const HANDLE output = HandleOf(stream);
  const char* const no = getenv("NO_COLOR");
  DWORD mode;
  return (!no || !*no) && GetConsoleMode(output, &mode) &&
         SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

bool ReadSecretLine(const std::string& prompt, std::string& line) {
  const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
  DWORD mode = 0, units = 0;
  wchar_t typed[1024];
  fputs(prompt.c_str(), stderr);
  GetConsoleMode(input, &mode);
  SetConsoleMode(input, mode & ~static_cast<DWORD>(ENABLE_ECHO_INPUT));
  bool read = ReadConsoleW(input, typed, 1024, &units, nullptr) && units > 0;
  SetConsoleMode(input, mode);
  fputs("\n", stderr);
  while (units > 0 && (typed[units - 1] == L'\n' || typed[units - 1] == L'\r')) --units;
  line.resize(3 * units);  // a code unit takes at most three bytes in UTF-8
  line.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, typed, static_cast<int>(units), line.data(),
                          static_cast<int>(line.size()), nullptr, nullptr)));
  SecureZeroMemory(typed, sizeof typed);
  return read;
}

void MakeInputBinary() {
  _setmode(_fileno(stdin), _O_BINARY);
}

void MakeOutputBinary() {
  _setmode(_fileno(stdout), _O_BINARY);
}

}  // namespace vosmere::tool
