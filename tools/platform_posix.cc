#include "tools/platform.h"

namespace vosmere::tool {

int RunProgram(int argc, char** argv, int (*work)(const Arguments& arguments)) {
  return work(argc > 1 ? Arguments(argv + 1, argv + argc) : Arguments());
}

}  // namespace vosmere::tool
