// Running a program on Windows.
#include <windows.h>
// After windows.h, which they need.
#include <objbase.h>
#include <shellapi.h>

#include <memory>

#include "tools/platform.h"
#include "vosmere/cpp/text.h"

namespace vosmere::tool {
namespace {

// The arguments of main have lost every character that is not in the ANSI code page.
Arguments WideArguments() {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> wide(
      CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
  Arguments arguments;
  for (int i = 1; wide && i < count; ++i) arguments.push_back(ToUtf8(wide.get()[i]));
  return arguments;
}

/// Initialises COM for this thread during its lifetime.
class ComThread {
 public:
  ComThread() : initialised_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
  ComThread(const ComThread&) = delete;
  ComThread& operator=(const ComThread&) = delete;
  ~ComThread() {
    if (initialised_) CoUninitialize();
  }

 private:
  bool initialised_;
};

/// Sets the code page of the console to UTF-8, and back at the end: the console outlives the
/// program.
class Utf8Console {
 public:
  Utf8Console() : before_(GetConsoleOutputCP()) { SetConsoleOutputCP(CP_UTF8); }
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;
  ~Utf8Console() {
    if (before_) SetConsoleOutputCP(before_);
  }

 private:
  UINT before_;
};

}  // namespace

int RunProgram(int, char**, int (*work)(const Arguments& arguments)) {
  const ComThread com;
  const Utf8Console console;
  return work(WideArguments());
}

}  // namespace vosmere::tool
