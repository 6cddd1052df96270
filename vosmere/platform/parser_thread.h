// Prepares a thread for reading documents.
#pragma once

#include "vosmere/base/export.h"

namespace vosmere {

/// While an object of this class lives, documents can be read on the thread that made it. On
/// Windows the parser is a COM component: if the thread has not initialised COM, it is initialised
/// for this time; otherwise nothing changes.
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
