// The verb "import", and "copy" to a bookmark file.
#include "tests/support/test.h"
#include "tests/support/tool.h"

namespace vosmere::test::import_tool {
namespace {

TEST(ImportTool, ListsTheRepairsAndSavesWhatTheNameAsksFor) {
  const TempFolder folder;
  const auto in = folder / "in.opml";
  WriteBytes(in,
             "<opml><head><title>a & b</title></head><body><outline text=\"f\">\n"
             "<outline text=\"p\" type=\"link\" url=\"http://p/\"/></outline></body></opml>");
  const std::string repair = Quoted(in).substr(1, in.string().size()) +
                             ":1:22: an '&' that begins no reference: '&' became '&amp;'\n";
  const struct {
    const char* output;
    const char* verb;
    const char* shown;
  } cases[] = {
      {"out.rss", "show ",
       "[collection] a & b\n  [folder] f\n    [item] p  http://p/\n"
       "1 folder, 1 item, 0 unread, 0 flagged\n"},
      {"out.html", "import -o - ", ""},
      {"out.opml", "import -o - ", ""},
  };
  std::string first;
  for (const auto& c : cases) {
    SCOPED_TRACE(c.output);
    const Outcome outcome = RunTool("import " + Quoted(in) + " -o " + Quoted(folder / c.output));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.errors, HasSubstr(repair));
    const std::string out = RunTool(c.verb + Quoted(folder / c.output)).out;
    if (*c.shown)
      EXPECT_EQ(out, c.shown);
    else
      EXPECT_THAT(out, HasSubstr("<outline text=\"p\" type=\"link\" url=\"http://p/\">"));
  }
  EXPECT_EQ(RunTool("copy " + Quoted(folder / "out.rss") + ' ' + Quoted(folder / "b.HTM")).exitCode,
            0);
  EXPECT_THAT(ReadBytes(folder / "b.HTM"), HasSubstr("<DT><A HREF=\"http://p/\""));
}

TEST(ImportTool, AddsToAListWhatItDoesNotHave) {
  const TempFolder folder;
  const auto list = [&](const char* name, const std::string& outlines) {
    WriteBytes(folder / name, "<opml><head><title>" + std::string(name) + "</title></head><body>" +
                                  outlines + "</body></opml>");
  };
  const std::string a = "<outline text=\"a\" type=\"link\" url=\"http://a/\"/>",
                    b = "<outline text=\"b & c\" type=\"link\" url=\"http://b/\"/>";
  list("mine", "<outline text=\"f\">" + a + "</outline>");
  list("new", a + b);
  const std::string verb =
      "import " + Quoted(folder / "new") + " --into " + Quoted(folder / "mine");
  EXPECT_EQ(RunTool(verb).exitCode, 0);
  const std::string merged = ReadBytes(folder / "mine");
  EXPECT_EQ(
      RunTool("import " + Quoted(folder / "mine") + " -o " + Quoted(folder / "out.rss")).exitCode,
      0);
  EXPECT_EQ(RunTool("show " + Quoted(folder / "out.rss")).out,
            "[collection] mine\n  [folder] f\n    [item] a  http://a/\n  [item] b & c  http://b/\n"
            "1 folder, 2 items, 0 unread, 0 flagged\n");
  EXPECT_EQ(RunTool(verb).exitCode, 0);
  EXPECT_EQ(ReadBytes(folder / "mine"), merged);
}

TEST(ImportTool, AFailureLeavesTheOutputAlone) {
  const TempFolder folder;
  WriteBytes(folder / "in", "<feed>&</feed>");
  WriteBytes(folder / "out", "old");
  const Outcome outcome =
      RunTool("import " + Quoted(folder / "in") + " -o " + Quoted(folder / "out"));
  EXPECT_EQ(outcome.exitCode, 1);
  EXPECT_THAT(outcome.errors, HasSubstr("error: an import reads"));
  EXPECT_EQ(ReadBytes(folder / "out"), "old");
  EXPECT_EQ(RunTool("import no/such -o " + Quoted(folder / "out")).exitCode, 2);
}

}  // namespace
}  // namespace vosmere::test::import_tool
