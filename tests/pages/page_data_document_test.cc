#include "vosmere/pages/page_data_document.h"

#include <gtest/gtest.h>

#include "tests/support/document.h"

namespace vosmere::test {
namespace {

struct PageWriter : CWritePageDataXML {
  using CWritePageDataXML::CWritePageDataXML;
  using CWritePageDataXML::FillText;
};

std::string SavedPage(CPageData* data) {
  CWritePageDataXML writer(data);
  return Saved(writer);
}

TEST(PageData, IsWrittenByteForByteAndReadBack) {
  CPageData data, back;
  data.SetPageTitle(W("Ann & Bob's <page>"));
  data.SetBrand(W("Bränd"));
  data.SetBrandLink(W("http://a.example/?a=1&b=2"));
  data.SetDescription(W(""));
  data.SetIndexTitle(W("\"Index\""));
  data.SetRootNodeTitle(W("Root"));
  data.SetTemplateName(W("plain"));
  EXPECT_EQ(SavedPage(&data), TestData("page_data.xml"));
  const TempFolder folder;
  WriteBytes(folder / "page.xml", TestData("page_data.xml"));
  EXPECT_TRUE(CReadPageDataXML(&back).ReadFile(W(folder / "page.xml")));
  EXPECT_EQ(SavedPage(&back), TestData("page_data.xml"));
  EXPECT_EQ(SavedPage(nullptr), "(not saved)");
}

TEST(PageData, LinesEndWithALoneLineFeedAndLongNamesWriteNothing) {
  PageWriter writer(nullptr);
  for (const std::size_t length : {124, 125})
    writer.FillText(W("t"), std::string(length, 'x').c_str());
  writer.FillText(nullptr, "x");
  const std::string name(124, 'x');
  BSTR const text = writer.GetXMLBSTR();
  EXPECT_EQ(OwnedBstr(text).utf8(), "<" + name + ">t</" + name + ">\n");
}

TEST(PageData, WhatIsNotReadStaysAsItWas) {
  const TempFolder folder;
  const struct {
    const char *document, *title;
    bool loads;
  } cases[] = {
      {"<vsmpagedata><pageTitle>new</pageTitle><x><brand>x</brand></x><Brand/></vsmpagedata>",
       "new", true},
      {"<vsmpagedata><pageTitle>a</pageTitle><pageTitle/></vsmpagedata>", "", true},
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

}  // namespace
}  // namespace vosmere::test
