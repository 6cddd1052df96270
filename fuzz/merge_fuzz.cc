// Whatever three scripts make of a tree, its merges keep their promises. The first two bytes are
// the lengths of the script of the base and of the one of ours, the third says whether items have
// identities; what is left edits theirs.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/support/edited_trees.h"

using namespace vosmere;
using namespace vosmere::test;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  std::string_view scripts(reinterpret_cast<const char*>(data) + 3, size - 3);
  const auto next = [&](std::size_t length) {
    const std::string_view script = scripts.substr(0, length);
    scripts.remove_prefix(script.size());
    return script;
  };
  const bool identifies = data[2] & 1;
  const vosmere::Tree base = Machine("x", next(data[0]), identifies).Edited(NewTree("root"));
  const vosmere::Tree ours = Machine("a", next(data[1]), identifies).Edited(base);
  const vosmere::Tree theirs = Machine("b", next(1000), identifies).Edited(base);
  const std::string problem = MergeProblem(base, ours, theirs, identifies);
  if (problem.empty()) return 0;
  std::fputs(problem.c_str(), stderr);
  std::abort();
}
