// What a program has to do for itself on each system: take its arguments, say in which encoding it
// prints, and prepare its main thread for the library.
#pragma once

#include <string>
#include <vector>

namespace vosmere::tool {

/// Lives as long as the program's work. On Windows it initialises COM for this thread and sets the
/// console to UTF-8.
class Session {
 public:
  Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

 private:
  unsigned consoleCodePage_ = 0;
  bool hasCom_ = false;
};

/// The arguments behind the program's name, in UTF-8.
std::vector<std::string> Arguments(int argc, char** argv);

}  // namespace vosmere::tool
