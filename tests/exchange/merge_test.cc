// Merging: what holds for all trees, and one row for each rule.
#include "vosmere/cpp/merge.h"

#include <random>

#include "tests/support/edited_trees.h"
#include "tests/support/test.h"

namespace vosmere::test::merge {

std::string Script(std::mt19937& random, std::size_t most) {
  std::string script(random() % most, '\0');
  for (char& byte : script) byte = static_cast<char>(random());
  return script;
}

TEST(Merge, KeepsItsPromisesForAllTrees) {
  std::mt19937 random(17);
  const vosmere::Tree root = NewTree("root");
  for (int round = 0; round < 300; ++round) {
    const auto edited = [&](const char* name, const vosmere::Tree& from, std::size_t most) {
      const std::string script = Script(random, most);
      return Machine(name, script).Edited(from);
    };
    const vosmere::Tree base = edited("x", root, 90);
    const vosmere::Tree sides[] = {edited("a", base, 60), edited("b", base, 60),
                                   edited("c", base, 60)};
    ASSERT_EQ(MergeProblem(base, sides[0], sides[1]), "") << round;
    Merger merge;
    int order[] = {0, 1, 2};
    vosmere::Tree first;
    do {
      const vosmere::Tree two = merge(base, sides[order[0]], sides[order[1]]);
      vosmere::Tree three = merge(base, two, sides[order[2]]);
      if (!first) first = std::move(three);
      else ASSERT_EQ(merge.Differs(first, three), "") << round;
    } while (std::next_permutation(order, order + 3));
  }
}

}  // namespace vosmere::test::merge
