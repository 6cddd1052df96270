// What the tool shows of every kind of document, with a record that no document has.
#include <gtest/gtest.h>

#include <sstream>

#include "tools/show.h"

namespace vosmere::tool {
namespace {

TEST(Record, IsShownOnALineAndInLinesOfItsOwn) {
  Record site{"site"};
  site.Add("name", "a");
  site.Add("host", "ftp.example", kOwnLine);
  site.Add("port", 2121, kOnLine);
  site.Add("link", "http://www.example", kOnLine);
  std::ostringstream out;
  Show(site, "site", {}, out);
  EXPECT_EQ(out.str(),
            "[site] a  (port 2121)  http://www.example\n"
            "  host: ftp.example\n");
}

}  // namespace
}  // namespace vosmere::tool
