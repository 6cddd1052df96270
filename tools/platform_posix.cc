#include "tools/platform.h"

namespace vosmere::tool {

Session::Session() = default;
Session::~Session() = default;

std::vector<std::string> Arguments(int argc, char** argv) {
  return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

}  // namespace vosmere::tool
