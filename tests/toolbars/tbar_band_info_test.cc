#include "vosmere/toolbars/tbar_band_info.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "tests/support/failing_memory.h"
#include "tests/support/row.h"
#include "tests/support/wide.h"

namespace vosmere::test {
namespace {

std::string Titles(const CTBarBandInfo& bands) {
  return Row(bands.GetRBandInfoItemHead(),
             [](const TList<TBARBANDINFO*>* cell) { return Utf8(cell->data->title); });
}

TEST(TBarBandInfo, ATextIsCutToFitBetweenCharacters) {
  TBARBANDINFO band;
  const std::string x(257, 'x');
  const struct {
    std::string text, title;
  } cases[] = {{x + "yz", x + "yz"},
               {x + "yz!", x + "yz"},
               {x + "😀", x + "😀"},
               {x + "y😀", x + "y"},  // its first half alone would fit
               {"", ""}};
  for (const auto& c : cases) {
    band.SetTitle(W(c.text));
    EXPECT_EQ(Utf8(band.title), c.title);
  }
  band.SetClsid(Repeated(40));
  EXPECT_EQ(Utf8(band.clsid), std::string(39, 'x'));
  band.SetClsid(nullptr);
  EXPECT_EQ(Utf8(band.clsid) + Utf8(band.title), "");
}

TEST(TBarBandInfo, ThreadsAddCopiesUnderTheLock) {
  constexpr int kEach = 200;
  CTBarBandInfo bands;
  const auto add = [&bands] {
    TBARBANDINFO band;
    band.SetTitle(W("x"));
    for (int i = 0; i < kEach; ++i) EXPECT_EQ(Utf8(bands.AddBandInfoCopy(&band)->title), "x");
  };
  std::thread other(add);
  add();
  other.join();
  for (int successes = 0; successes < 2; ++successes) {
    const TBARBANDINFO band;
    const FailingMemory memory(successes);
    EXPECT_EQ(bands.AddBandInfoCopy(&band), nullptr);
  }
  EXPECT_EQ(Titles(bands).find("BROKEN"), std::string::npos);
  EXPECT_EQ(Titles(bands).size(), 4u * kEach - 1);
}

}  // namespace
}  // namespace vosmere::test
