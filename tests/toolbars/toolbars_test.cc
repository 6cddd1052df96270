#include "vosmere/toolbars/toolbars_document.h"

#include "tests/support/document.h"
#include "tests/support/test.h"

namespace vosmere::test::toolbars {

TEST(TBarBandInfo, ATextIsCutToFitBetweenCharacters) {
  TBARBANDINFO band;
  EXPECT_EQ(band.index + band.style + band.reserved1 + band.reserved2, 0);
  const std::string x(257, 'x');
  const struct {
    std::string text, title;
  } cases[] = {{x + "yz", x + "yz"},
               {x + "yz!", x + "yz"},
               {x + "😀", x + "😀"},
               {x + "y😀", x + "y"},  // its first half would fit alone
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

TEST(TBarBandInfo, ThreadsAddCopiesUnderTheLockWhileOthersWrite) {
  constexpr int kEach = 200;
  CTBarBandInfo bands;
  AtOnce(3, [&bands](int thread) {
    TBARBANDINFO band;
    band.SetTitle(W("x"));
    for (int i = 0; i < kEach && thread < 2; ++i)
      EXPECT_EQ(Utf8(bands.AddBandInfoCopy(&band)->title), "x");
    for (int i = 0; i < 20 && thread == 2; ++i) {
      CWriteToolbarXML writer;
      writer.SetTBarBandInfo(&bands);
      OwnedBstr(writer.GetXMLBSTR());
    }
  });
  for (int successes = 0; successes < 2; ++successes) {
    const TBARBANDINFO band;
    const FailingMemory memory(successes);
    EXPECT_EQ(bands.AddBandInfoCopy(&band), nullptr);
  }
  const std::string titles =
      Row(bands.GetRBandInfoItemHead(), [](const auto* cell) { return Utf8(cell->data->title); });
  EXPECT_EQ(titles.find("BROKEN"), titles.npos);
  EXPECT_EQ(titles.size(), 4u * kEach - 1);
  CWriteToolbarXML writer;
  writer.SetTBarBandInfo(&bands);
  {
    const FailingMemory memory(2);  // the first chunk and its record
    EXPECT_THROW(writer.GetXMLBSTR(), std::bad_alloc);
  }
  AtOnce(1, [&](int) {
    ASSERT_TRUE(bands.TryLock()) << "after a document that ran out of memory";
    bands.UnLock();
  });
}

}  // namespace vosmere::test::toolbars
