#include "tests/support/document.h"
#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "vosmere/pages/note_html.h"
#include "vosmere/pages/page_data_document.h"

namespace vosmere::test::pages {

class NoteHtml : public testing::Test {
 protected:
  NoteHtml() { note->GetNodeStat()->SetStatTime(1, 0, 2, 7); }

  std::string Written() {
    EXPECT_TRUE(CWriteNoteHtml().WriteToFile(note.get(), W(folder / "note.html")));
    return ReadBytes(folder / "note.html");
  }

  const Zone zone{"PST8"};
  const TempFolder folder;
  const Item<CUrlNode> note{CUrlNode::New()};
};

TEST_F(NoteHtml, IsWrittenByteForByteWithoutEscapingOrAnEnd) {
  note->SetName(W("Größe <b>& mehr"));
  note->SetDescription(W("<p>Text\r\n</div>"));
  EXPECT_EQ(Written(), TestData("note.html"));
}

TEST_F(NoteHtml, NothingIsLeftOutButTheTexts) {
  note->SetName(nullptr);
  EXPECT_EQ(Written(),
            "<html><META http-equiv=Content-Type content=\"text/html; charset=unicode\"><title>"
            "</title><body><font size=+1>&nbsp;<p><b></b></font><br><hr "
            "style=\"color:'#bbc';height:'1'\"><br><div></div><p><font size=-1>"
            "Wed, 31 Dec 1969 16:00:00 +0800</font></body><html>");
}

TEST_F(NoteHtml, WithoutAFileItIsFalseAndWithoutMemoryTheOldOneStays) {
  EXPECT_FALSE(CWriteNoteHtml().WriteToFile(note.get(), W(folder / "no" / "note.html")));
  EXPECT_FALSE(CWriteNoteHtml().WriteToFile(note.get(), nullptr));
  EXPECT_FALSE(CWriteNoteHtml().WriteToFile(nullptr, W(folder / "none.html")));
  EXPECT_FALSE(std::filesystem::exists(folder / "none.html"));
  const std::string old = Written();
  const Wide path = W(folder / "note.html");
  const auto write = [&] {
    return CWriteNoteHtml().WriteToFile(note.get(), path) ? "written" : nullptr;
  };
  const auto check = [&](const char* written, bool failed) {
    EXPECT_EQ(written == nullptr, failed);
    EXPECT_EQ(ReadBytes(folder / "note.html"), old);
  };
  AtEachFailure([&] { return NullIfNoMemory(write); }, check, Failures::kOne);
}

struct PageWriter : CWritePageDataXML {
  using CWritePageDataXML::CWritePageDataXML;
  using CWritePageDataXML::FillText;
};

TEST(PageData, LinesEndWithALoneLineFeedAndLongNamesWriteNothing) {
  PageWriter writer(nullptr);
  EXPECT_EQ(Saved(writer), "(not saved)");
  for (const std::size_t length : {124, 125})
    writer.FillText(W("t"), std::string(length, 'x').c_str());
  writer.FillText(nullptr, "x");
  const std::string name(124, 'x');
  EXPECT_EQ(OwnedBstr(writer.GetXMLBSTR()).utf8(), "<" + name + ">t</" + name + ">\n");
}

TEST(PageData, WhatIsNotReadStaysAsItWas) {
  const TempFolder folder;
  const struct {
    const char *document, *title;
    bool loads;
  } cases[] = {
      {"<vsmpagedata><pageTitle>new</pageTitle></vsmpagedata>", "new", true},
      {"<vsmpagedata><x/></vsmpagedata>", "old", true},
      {"<vsmpagedatas><pageTitle>new</pageTitle></vsmpagedatas>", "old", true},
      {"<vsmpagedata><pageTitle>new</pageTitle>", "old", false},
  };
  for (const auto& c : cases) {
    CPageData data;
    data.SetPageTitle(W("old"));
    data.SetBrand(W("brand"));
    WriteBytes(folder / "page.xml", c.document);
    EXPECT_EQ(CReadPageDataXML(&data).ReadFile(W(folder / "page.xml")), c.loads);
    EXPECT_EQ(Utf8(data.GetPageTitle()), c.title) << c.document;
    EXPECT_EQ(Utf8(data.GetBrand()), "brand") << c.document;
  }
  CPageData data;
  EXPECT_FALSE(CReadPageDataXML(&data).ReadFile(W(folder / "none.xml")));
  EXPECT_FALSE(CReadPageDataXML(&data).ReadFile(nullptr));
}

}  // namespace vosmere::test::pages
