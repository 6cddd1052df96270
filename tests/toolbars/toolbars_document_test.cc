#include "vosmere/toolbars/toolbars_document.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "tests/support/document.h"
#include "tests/support/failing_memory.h"
#include "tests/support/row.h"

namespace vosmere::test {
namespace {

using BandsPtr = std::unique_ptr<CTBarBandInfo>;

std::string SavedBands(CTBarBandInfo* bands) {
  CWriteToolbarXML writer;
  writer.SetTBarBandInfo(bands);
  return Saved(writer);
}

BandsPtr ReadBands(const std::string& document) {
  CReadVosmereXML reader;
  return BandsPtr(Load(reader, document) ? static_cast<CTBarBandInfo*>(reader.DetachData())
                                         : nullptr);
}

/// Of each band all fields.
std::string Show(const BandsPtr& bands) {
  if (!bands) return "none";
  return Row(bands->GetRBandInfoItemHead(), [](const TList<TBARBANDINFO*>* cell) {
    const TBARBANDINFO& band = *cell->data;
    std::string shown = Utf8(band.title) + "," + Utf8(band.clsid) +
                        (band.enabled ? ",on" : ",off") + (band.visible ? ",seen" : ",hidden");
    if (band.hasContainerData) shown += ",data";
    for (const int number :
         {band.size, band.index, band.style, band.width, band.reserved1, band.reserved2})
      shown += "," + std::to_string(number);
    return shown;
  });
}

TEST(Toolbars, AreWrittenByteForByteAndReadBack) {
  CTBarBandInfo bands;
  TBARBANDINFO band;
  band.SetTitle(W("Tools & \"more\" für alle"));
  band.SetClsid(W("{00000000-0000-4000-8000-000000000001}"));
  band.hasContainerData = true;
  band.index = 1;
  band.style = -2147483647 - 1;
  band.width = 2147483647;
  bands.AddBandInfoCopy(&band);  // not enabled, so its place is not written
  band.enabled = true;
  bands.AddBandInfoCopy(&band);
  band = {};
  band.size = 7;
  band.reserved1 = band.reserved2 = 7;
  band.enabled = true;
  band.visible = false;
  bands.AddBandInfoCopy(&band);
  EXPECT_EQ(SavedBands(&bands), TestData("toolbars.xml"));
  const std::string texts = "Tools & \"more\" für alle,{00000000-0000-4000-8000-000000000001},";
  EXPECT_EQ(Show(ReadBands(TestData("toolbars.xml"))),
            texts + "off,seen,20,0,0,50,0,0 " + texts +
                "on,seen,data,20,1,-2147483648,2147483647,0,0 ,,on,hidden,20,0,0,50,0,0");
  EXPECT_EQ(SavedBands(nullptr), "(not saved)");
}

TEST(Toolbars, StatusAndVisibilityAreKnownByTheirBeginning) {
  const std::string rest = ",20,0,0,50,0,0", off = ",,off,seen" + rest;
  const struct {
    std::string content, shown;
  } cases[] = {
      {"<toolbar/>", off},
      {"<toolbar STATUS='ENABLED'/>", ",,on,seen" + rest},
      {"<toolbar status2='enabledx' VisibleNow='TRUEx'/>", ",,on,seen" + rest},
      {"<toolbar status=' enabled' visible='1'/>", ",,off,hidden" + rest},
      {"<toolbar status='enabled' statu='x' status2='' visible=''/>", ",,off,hidden" + rest},
      {"<toolbar><rebar Index='1'/></toolbar>", ",,off,seen,data" + rest},
      {"<toolbar><rebar width='-9999999999' index=' 3x' style=''/><Rebar index='4'/></toolbar>",
       ",,off,seen,data,20,3,0,-2147483648,0,0"},
      {"<toolbar><x><title>t</title><rebar/></x><Title>t</Title></toolbar><title>t</title>", off},
      {"<x><toolbar><title>a</title><title>b</title></toolbar></x>", "b" + off},
      {"<toolbar><toolbar/><title>t</title><rebar/></toolbar>", off + " " + off},
      {"<toolbar><rebar><toolbar/></rebar><title>t</title></toolbar>",
       ",,off,seen,data" + rest + " " + off},
      {"<toolbar><toolbars/><title>t</title></toolbar>", off},
      {"<toolbar><title>" + std::string(300, 'x') + "</title><clsid>" + std::string(40, 'y') +
           "</clsid></toolbar>",
       std::string(259, 'x') + "," + std::string(39, 'y') + off.substr(1)},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Show(ReadBands("<toolbars>" + c.content + "</toolbars>")), c.shown) << c.content;
  EXPECT_EQ(Show(ReadBands("<toolbars> </toolbars>")), "");
}

TEST(Toolbars, WritingHoldsTheLockAndReleasesItWithoutMemory) {
  CTBarBandInfo bands;
  const TBARBANDINFO band;
  std::thread other([&] {
    for (int i = 0; i < 1000; ++i) bands.AddBandInfoCopy(&band);
  });
  for (int i = 0; i < 20; ++i) SavedBands(&bands);
  other.join();
  CWriteToolbarXML writer;
  writer.SetTBarBandInfo(&bands);
  {
    const FailingMemory memory(2);  // the first chunk and its record
    EXPECT_THROW(writer.GetXMLBSTR(), std::bad_alloc);
  }
  std::thread([&] {
    const bool free = bands.TryLock();
    EXPECT_TRUE(free);
    if (free) bands.UnLock();
  }).join();
}

}  // namespace
}  // namespace vosmere::test
