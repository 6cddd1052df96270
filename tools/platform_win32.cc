#include <windows.h>
// After windows.h, which they need.
#include <objbase.h>
#include <shellapi.h>

#include <memory>

#include "tools/platform.h"

namespace vosmere::tool {
namespace {

std::string Utf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (size < 1) return {};
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
  utf8.pop_back();  // the terminating zero
  return utf8;
}

}  // namespace

Session::Session()
    : consoleCodePage_(GetConsoleOutputCP()),
      hasCom_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
  SetConsoleOutputCP(CP_UTF8);
}

Session::~Session() {
  if (hasCom_) CoUninitialize();
  if (consoleCodePage_) SetConsoleOutputCP(consoleCodePage_);
}

// The narrow arguments have lost what the ANSI code page cannot say.
std::vector<std::string> Arguments(int, char**) {
  int count = 0;
  const std::unique_ptr<wchar_t*, decltype(&LocalFree)> wide(
      CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; wide && i < count; ++i) arguments.push_back(Utf8(wide.get()[i]));
  return arguments;
}

}  // namespace vosmere::tool
