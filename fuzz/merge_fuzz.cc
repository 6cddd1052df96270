// Whatever three scripts make of a tree, its merges keep their promises. The first two bytes are
// the lengths of the script of the base and of the one of ours; what is left edits theirs.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tests/support/edited_trees.h"

using namespace vosmere;
using namespace vosmere::test;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  std::string_view scripts(reinterpret_cast<const char*>(data) + 2, size - 2);
  const auto next = [&](std::size_t length) {
    const std::string_view script = scripts.substr(0, length);
    scripts.remove_prefix(script.size());
    return script;
  };
  const vosmere::Tree base = Machine("x", next(data[0])).Edited(NewTree("root"));
  const vosmere::Tree ours = Machine("a", next(data[1])).Edited(base);
  const vosmere::Tree theirs = Machine("b", next(1000)).Edited(base);
  const std::string problem = MergeProblem(base, ours, theirs);
  if (problem.empty()) return 0;
  std::fputs(problem.c_str(), stderr);
  std::abort();
}
