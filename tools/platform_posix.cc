// Running a program on Linux.
#include "tools/platform.h"

#include <clocale>

namespace vosmere::tool {

int RunProgram(int argc, char** argv, int (*work)(const Arguments& arguments)) {
  std::setlocale(LC_CTYPE, "");
  return work(argc > 1 ? Arguments(argv + 1, argv + argc) : Arguments());
}

}  // namespace vosmere::tool
