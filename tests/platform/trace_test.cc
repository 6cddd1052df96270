#include "vosmere/platform/trace.h"

#include "tests/support/test.h"
#include "tests/support/traces.h"

namespace vosmere::test::trace {

TEST(Trace, TakesWideTextsOfEitherKindBesideOthers) {
  const OwnedBstr changeable(W("größer"));
  const WChar* const constant = changeable.get();
  const Traces traces;
  Trace("%d %s %s %s\n", 7, "narrow", changeable.get(), constant);
  Trace("[%s]\n", static_cast<const WChar*>(nullptr));
  EXPECT_EQ(traces.lines(), (std::vector<std::string>{"7 narrow größer größer\n", "[]\n"}));
}

TEST(Trace, ALongTextIsCut) {
  const Wide text = Repeated(100000);
  const Traces traces;
  Trace("%s\n", text.get());
  ASSERT_EQ(traces.lines().size(), 1u);
  EXPECT_LT(traces.lines()[0].size(), 5000u);
}

}  // namespace vosmere::test::trace
