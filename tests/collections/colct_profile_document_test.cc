#include "vosmere/collections/colct_profile_document.h"

#include <gtest/gtest.h>

#include "tests/support/document.h"
#include "tests/support/row.h"
#include "tests/support/stored_documents.h"

namespace vosmere::test {
namespace {

/// Owns the entries of a profile.
struct Entries {
  Entries() = default;
  Entries(const Entries&) = delete;
  Entries& operator=(const Entries&) = delete;
  ~Entries() { RColctExData::DeleteList(head); }

  Entries& Add(const Wide& url, const Wide& itemID) {
    CColctExData* const data = CColctExData::New();
    data->SetColctUrl(url);
    data->SetItemID(itemID);
    chain::Append(head, RColctExData::New(data));
    return *this;
  }

  RColctExData* head = nullptr;
};

/// What is between "<colct><url>" and "</url>" for this address.
std::string Stored(const std::string& url, const Wide& basePath, const Wide& library) {
  Entries entries;
  entries.Add(W(url), nullptr);
  CWriteColctExData writer;
  writer.SetBasePathAndLibrary(basePath, library);
  writer.SetRColctExDataHead(entries.head);
  const std::string saved = Saved(writer);
  const std::size_t begin = saved.find("<url>") + 5;
  return saved.substr(begin, saved.find("</url>") - begin);
}

TEST(ColctProfile, IsWrittenByteForByteAndReadBack) {
  Entries entries;
  entries.Add(W("C:\\Data\\Lib\\a.xml"), W("i<1>")).Add(W("X:\\Other\\b.xml"), nullptr);
  entries.Add(W(""), nullptr);
  CWriteColctExData writer;
  writer.SetBasePathAndLibrary(W("C:\\Data\\"), W("Lib"));
  writer.SetDefaultColctUrl(W("Z:\\gone\\lib\\news & more.xml"));
  writer.SetRColctExDataHead(entries.head);
  const std::string golden = TestData("colct_profile.xml");
  EXPECT_EQ(Saved(writer), golden);
  EXPECT_EQ(Rewritten("colct_profile.xml", golden), golden);
}

TEST(ColctProfile, AddressesStartAtTheLibraryWhateverStandsBefore) {
  const Wide base = W("C:\\Data\\"), library = W("Lib");
  EXPECT_EQ(Stored("X:\\OtherLib\\a.xml", W("12345678"), library), "Lib\\a.xml");
  EXPECT_EQ(Stored("12345678LIBx", base, library), "LIBx");
  EXPECT_EQ(Stored("C:\\Data\\Lib", base, library), "C:\\Data\\Lib");  // nothing behind it
  EXPECT_EQ(Stored("C:\\Data\\Lab\\a", base, library), "C:\\Data\\Lab\\a");
  EXPECT_EQ(Stored("Lib\\a", W(""), library), "Lib\\a");
  EXPECT_EQ(Stored("C:\\Data\\Lib\\a", base, nullptr), "C:\\Data\\Lib\\a");
  EXPECT_EQ(Stored("C:\\Data\\Lib\\a", nullptr, library), "C:\\Data\\Lib\\a");
}

TEST(ColctProfile, TheDefaultIsMadeRelativeWhenItIsSet) {
  const auto saved = [](auto set) {
    CWriteColctExData writer;
    set(writer);
    return Saved(writer);
  };
  const Wide url = W("C:\\Lib\\a"), base = W("C:\\"), library = W("Lib");
  EXPECT_NE(saved([&](CWriteColctExData& writer) {
              writer.SetDefaultColctUrl(url);
              writer.SetBasePathAndLibrary(base, library);
            }).find("<defaultcolct>C:\\Lib\\a</defaultcolct>"),
            std::string::npos);
  for (const Wide& none : {Wide(nullptr), W("")})
    EXPECT_EQ(saved([&](CWriteColctExData& writer) {
                writer.SetDefaultColctUrl(url);
                writer.SetDefaultColctUrl(none);
              }),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              " <colctprofile version=\"1.0\">\r\n</colctprofile>");
}

TEST(ColctProfile, ElementsCountWhereTheyBelong) {
  const struct {
    const char *content, *entries, *defaultUrl;
  } cases[] = {
      {"<colct/>", "(null),(null)", "(null)"},
      {"<x><colct><url/><item>i</item></colct></x>", ",i", "(null)"},
      {"<colct><x><url>u</url></x></colct><item>i</item>", "(null),(null)", "(null)"},
      {"<defaultcolct>d</defaultcolct><head><defaultcolct/></head>", "", "d"},
      {"<colct><url>u</url><defaultcolct>d</defaultcolct></colct>", "u,(null)", "d"},
      {"<colct><colct><url>u</url></colct><url>v</url></colct>", "(null),(null) u,(null)",
       "(null)"},
      {"<colct><url>u<colct><item>i</item></colct></url><item>j</item></colct>",
       "ui,(null) (null),i", "(null)"},
      {"<colct><url>u</url><colctprofile/><item>i</item></colct>", "u,(null)", "(null)"},
      {"<defaultcolct>d<defaultcolct>e<defaultcolct/></defaultcolct></defaultcolct>", "", "e"},
  };
  for (const auto& c : cases) {
    CReadColctExData reader;
    EXPECT_TRUE(Load(reader, std::string("<colctprofile>") + c.content + "</colctprofile>"));
    EXPECT_EQ(Row(reader.GetRColctExDataHead(),
                  [](const RColctExData* cell) {
                    return Utf8(cell->item->GetColctUrl()) + "," + Utf8(cell->item->GetItemID());
                  }),
              c.entries)
        << c.content;
    EXPECT_EQ(OwnedBstr(reader.DetachDefaultColctUrl()).utf8(), c.defaultUrl) << c.content;
  }
}

}  // namespace
}  // namespace vosmere::test
