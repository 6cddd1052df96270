// What the tool does for every kind of document, shown with records that no document has yet.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tools/loss_on_save.h"
#include "tools/show.h"
#include "tools/snapshot.h"

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

/// Items of a document, which Records go over.
struct Cell {
  Record record;
  Cell* next = nullptr;
};

Record RecordOf(Cell& cell) {
  return cell.record;
}

Record List(Cell* head) {
  return {"sites", {}, true, Records::Of<RecordOf>(head)};
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
  std::ostringstream json;
  ShowJson(Site("a", "sesame"), json);
  findings.Print(out, "file");
  EXPECT_THAT(out.str(), HasSubstr("password comes back changed: the site itself"));
  EXPECT_THAT(out.str() + Shown(Site("a", "sesame")) + json.str(), Not(HasSubstr("sesame")));
}

TEST(Record, WhatASaveLeavesOutIsNamedAndTheOthersAreComparedWithoutIt) {
  Cell c{Site("c", "")}, b{Site("b", ""), &c}, a{Site("a", ""), &b};
  Cell d{Site("d", "")}, first{Site("a", ""), &d};
  std::ostringstream out;
  Findings findings(1);
  EXPECT_FALSE(Compare(List(&a), List(&first), List(&a), "list", findings));
  EXPECT_FALSE(Compare(List(&first), List(&a), List(&first), "list", findings));
  EXPECT_EQ(findings.size(), 0u);

  b.record.leftOut = "a site without an address is left out";
  const Snapshot saved(List(&a));
  EXPECT_TRUE(Compare(saved.Content(), List(&first), saved.Content(), "list", findings));
  findings.Print(out, "f");
  EXPECT_EQ(out.str(),
            "f: warning: a site without an address is left out: b\n"
            "f: warning: name comes back changed: c\n");
}

}  // namespace
}  // namespace vosmere::tool
