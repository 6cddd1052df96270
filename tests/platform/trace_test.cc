#include "vosmere/platform/trace.h"

#include "tests/support/test.h"
#include "tests/support/traces.h"

namespace vosmere::test::trace {

TEST(Trace, TakesWideTextsOfEitherKindBesideOthersAndCutsLongOnes) {
  const OwnedBstr changeable(W("größer"));
  const WChar* const constant = changeable.get();
  const Wide text = Repeated(100000);
  const Traces traces;
  Trace("%d %s %s %s\n", 7, "narrow", changeable.get(), constant);
  Trace("[%s]\n", static_cast<const WChar*>(nullptr));
  Trace("%s\n", text.get());
  Trace("%s%s%s%s\n", text.get(), text.get(), text.get(), text.get());
  EXPECT_THAT(traces.lines(), ElementsAre("7 narrow größer größer\n", "[]\n",
                                          std::string(1024, 'x') + '\n', testing::SizeIs(4095)));
}

}  // namespace vosmere::test::trace
