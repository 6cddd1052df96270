#include "vosmere/ftp/ftp_sites_document.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document.h"
#include "tests/support/row.h"

namespace vosmere::test {
namespace {

/// Owns the cells and their sites.
struct Sites {
  ~Sites() { list::DeleteItems(head); }

  CFtpConBase& Add() { return *list::Append(head, CFtpConBase::New())->data; }
  std::string Saved() const {
    CWriteFtpSiteXML writer;
    writer.SetFtpConList(head);
    return test::Saved(writer);
  }

  TList<CFtpConBase*>* head = nullptr;
};

/// The text of the elements that one site is written with, when it was read from `content`.
std::string Rewritten(const std::string& content) {
  CReadFtpSiteXML reader;
  if (!Load(reader, "<ftpsites><site>" + content + "</site></ftpsites>")) return "not loaded";
  const std::string saved = Sites{reader.DetachFtpSiteList()}.Saved();
  const std::size_t begin = saved.find("<site>") + 6;
  return saved.substr(begin, saved.rfind("</site>") - begin);
}

TEST(FtpSites, AreWrittenByteForByteAndReadBack) {
  Sites sites;
  CFtpConBase& full = sites.Add();
  full.SetTitle(W("Ann's <site>"));
  full.SetHost(W("ftp.example"));
  full.SetUserName(W("ann & böb"));
  full.SetInitPath(W("/pub/\"x\""));
  full.SetPASVMode(true);
  full.SetPort(2121);
  full.SetSavePSW(true);
  full.SetCurrent(true);
  full.SetUUID(W("00000000-0000-4000-8000-000000000001"));
  full.SetStampID(W("stamp"));
  full.GetFtpWebAddress()->Add(W("Home"), W("http://a.example/~ann/"));
  full.GetFtpWebAddress()->Add(W("left out"), W(""));
  full.GetFtpWebAddress()->Add(nullptr, W("left out"));
  full.GetFtpWebAddress()->Add(W("Bilder für alle"), W("http://b.example/"));
  CFtpConBase& bare = sites.Add();
  bare.SetTitle(W(""));
  EXPECT_EQ(sites.Saved(), TestData("ftp_sites.xml"));
  CReadFtpSiteXML reader;
  ASSERT_TRUE(Load(reader, TestData("ftp_sites.xml")));
  EXPECT_EQ(Sites{reader.DetachFtpSiteList()}.Saved(), TestData("ftp_sites.xml"));
  EXPECT_EQ(reader.GetFtpSiteList(), nullptr);
}

TEST(FtpSites, WebAddressesAreWrittenUnescapedAndSoMayNotBeReadable) {
  Sites sites;
  sites.Add().GetFtpWebAddress()->Add(W("R&D"), W("<\">"));
  EXPECT_THAT(sites.Saved(),
              testing::HasSubstr("<webaddress name=\"R&D\" link=\"<\">\" /></site>"));
  CReadFtpSiteXML reader;
  EXPECT_FALSE(Load(reader, sites.Saved()));
  EXPECT_EQ(reader.DetachFtpSiteList(), nullptr);
}

TEST(FtpSites, ElementsHaveTheirOwnIdeasOfTruth) {
  const std::string no = "<savepsw>false</savepsw>\r\n", yes = "<savepsw>true</savepsw>\r\n";
  const struct {
    std::string content, written;
  } cases[] = {
      {"", no},
      {"<pasvmode>TRUE</pasvmode><pasvmode>false</pasvmode>", "<pasvmode>true</pasvmode>\r\n" + no},
      {"<pasvmode> true</pasvmode><PASVMODE>true</PASVMODE>", no},
      {"<savepsw>True</savepsw><savepsw>1</savepsw><current>TRUE</current>",
       yes + "<current>true</current>\r\n"},
      {"<savepsw>true</savepsw><savepsw>False</savepsw><current>true</current>"
       "<current>FALSE</current>",
       no},
      {"<port>x</port>", "<port>0</port>\r\n" + no},
      {"<port>80</port><port>21</port>", "<port>80</port>\r\n" + no},
      {"<x><port>80</port></x>", no},
      {"<title>a<site/></title><port>80</port>",
       "<title>a</title>\r\n" + no + "</site>\r\n<site>" + no},
      {"<title>a</title><ftpsites/><port>80</port>", "<title>a</title>\r\n" + no},
      {"<webaddress name='a'/><webaddress name='' link='b'/><webaddress Name='a' link='b'/>"
       "<webaddress link='l' name='n' x=''>t</webaddress>",
       no + "<webaddress name=\"n\" link=\"l\" />"},
      {"<title>a</title></site><title>b</title><x><site/></x><site><site/><host>h</host>",
       "<title>a</title>\r\n" + no + "</site>\r\n<site>" + no + "</site>\r\n<site>" + no +
           "</site>\r\n<site>" + no},
  };
  for (const auto& c : cases) EXPECT_EQ(Rewritten(c.content), c.written) << c.content;
}

}  // namespace
}  // namespace vosmere::test
