// What a thread needs before it reads documents.
#pragma once

#include "vosmere/base/export.h"

namespace vosmere {

/// While it lives, documents can be read on the thread that made it. On Windows the parser is a COM
/// component: a thread that has not initialised COM has it for so long, any other keeps its own.
class VOSMERE_API ParserThread {
 public:
  ParserThread();
  ParserThread(const ParserThread&) = delete;
  ParserThread& operator=(const ParserThread&) = delete;
  ~ParserThread();  // NOLINT(performance-trivially-destructible): on Windows it has work to do

 private:
  [[maybe_unused]] bool ends_ = false;
};

}  // namespace vosmere
