#include "vosmere/platform/parser_thread.h"

#include <windows.h>

#include <objbase.h>

namespace vosmere {

// Each success needs a CoUninitialize, also if COM was initialised before.
ParserThread::ParserThread() : ends_(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}

ParserThread::~ParserThread() {
  if (ends_) ::CoUninitialize();
}

}  // namespace vosmere
