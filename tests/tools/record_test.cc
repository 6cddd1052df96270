// What the tool does for every kind of document, shown with records that no document has yet.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tools/compare.h"
#include "tools/show.h"

namespace vosmere::tool {
namespace {

using testing::HasSubstr;
using testing::Not;

Record Site(const char* name, const char* password) {
  Record site{"site"};
  site.Add("name", name);
  site.Add("host", "ftp.example", kOwnLine);
  site.Add("port", 2121, kOnLine);
  site.Add("link", "http://www.example", kOnLine | kRaw);
  site.Add("password", password, kOwnLine | kOnLine | kRaw | kSecret);
  return site;
}

std::string Shown(const Record& record) {
  std::ostringstream out;
  Show(record, "site", {}, out);
  return out.str();
}

TEST(Record, IsShownOnALineAndInLinesOfItsOwn) {
  EXPECT_EQ(Shown(Site("a", "sesame")),
            "[site] a  (port 2121)  http://www.example\n"
            "  host: ftp.example\n");
}

TEST(Record, ASecretIsComparedAndNeverPrinted) {
  std::ostringstream out;
  Findings findings(1);
  Compare(Site("a", ""), Site("b", "sesame"), Site("a", ""), "site", findings);
  ReportBreakers(Site("a", "sesame<"), "site", findings);
  findings.Print(out, "file");
  EXPECT_THAT(out.str(), HasSubstr("password comes back changed: the site itself"));
  EXPECT_THAT(out.str() + Shown(Site("a", "sesame")) + ToJson(Site("a", "sesame")).dump(),
              Not(HasSubstr("sesame")));
}

TEST(Record, WhatASaveLeavesOutIsNamedAndTheOthersAreComparedWithoutIt) {
  Record saved{"sites", {}, true, {Site("a", ""), Site("b", ""), Site("c", "")}};
  const Record back{"sites", {}, true, {Site("a", ""), Site("d", "")}};
  EXPECT_FALSE(SameShape(saved, back));
  saved.children[1].leftOut = "a site without an address is left out";
  ASSERT_TRUE(SameShape(saved, back));

  std::ostringstream out;
  Findings findings(1);
  Compare(saved, back, saved, "list", findings);
  findings.Print(out, "f");
  EXPECT_EQ(out.str(),
            "f: warning: a site without an address is left out: b\n"
            "f: warning: name comes back changed: c\n");
}

}  // namespace
}  // namespace vosmere::tool
