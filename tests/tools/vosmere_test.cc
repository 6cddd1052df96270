// The command-line tool, run as users and scripts run it.
#include "tests/support/document.h"
#include "tests/support/test.h"
#include "tests/support/tool.h"

namespace vosmere::test::vosmere_tool {

std::string In(const std::string& name) {
  return Quoted(TestPath(name));
}

/// How many warnings are about losses, not about values that a copy gets.
std::ptrdiff_t Losses(const Outcome& check) {
  std::istringstream lines(check.out);
  std::ptrdiff_t losses = 0;
  for (std::string line; std::getline(lines, line);)
    losses += line.find(": warning: ") != line.npos && line.find(": a copy ") == line.npos;
  return losses;
}

TEST(Tool, AnswersWhatItShould) {
  const TempFolder folder;
  for (const auto& row : TestTable("tool.txt")) {
    const std::string &verb = row[0], &kind = row[2], &answer = row[4];
    const std::string document = kind == "opml"  ? Opml(row[3])
                                 : kind == "rss" ? Rss(row[3])
                                                 : row[3];
    SCOPED_TRACE(verb + ' ' + document);
    WriteBytes(folder / "in", document);
    const Outcome outcome = RunTool(verb + " - <" + Quoted(folder / "in"));
    EXPECT_EQ(std::to_string(outcome.exitCode), row[1]);
    const bool isWarning = answer.find(": a copy ") == answer.npos && answer != ": fine";
    EXPECT_TRUE(verb != "check" || kind.empty() || Losses(outcome) == isWarning) << outcome.out;
    EXPECT_TRUE(!answer.empty() || (outcome.out + outcome.errors).empty()) << outcome.out;
    EXPECT_THAT(outcome.out + outcome.errors, HasSubstr(answer));
  }
}

TEST(Tool, UsageAndFilesThatCannotBeReadOrWrittenAreTwo) {
  const TempFolder folder;
  const std::string in = In("collection_tree.opml");
  const std::string missing = Quoted(folder / "missing" / "file.opml");
  for (const std::string& arguments :
       {std::string(), "paint " + in, "show --colour " + in, "show " + missing,
        "copy " + in + ' ' + missing, "copy " + in + ' ' + Quoted(folder / "")})
    EXPECT_EQ(RunTool(arguments).exitCode, 2) << arguments;
  for (const std::string& arguments :
       {"copy " + in + ' ' + missing, "note " + in + " News " + missing})
    EXPECT_THAT(RunTool(arguments).errors,
                testing::ContainsRegex("error: cannot be written: .+\n"));

  const Outcome help = RunTool("--help");
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_THAT(help.out, HasSubstr("Exit codes: 0"));
}

TEST(Tool, ChecksSeveralFilesAndTheWorstWins) {
  const TempFolder folder;
  WriteBytes(folder / "bad.opml", "<opml>");
  const std::string in = In("tags.xml"), bad = Quoted(folder / "bad.opml");
  const Outcome check = RunTool("check " + bad + ' ' + in);
  EXPECT_EQ(check.exitCode, 1);
  EXPECT_THAT(check.out, HasSubstr("tags.xml: fine"));
  EXPECT_THAT(check.errors, testing::ContainsRegex("error: .+\n  <opml>\n  +\\^\n"));
  EXPECT_EQ(RunTool("check " + Quoted(folder / "none") + ' ' + bad + ' ' + in).exitCode, 2);
  EXPECT_EQ(RunTool("copy " + bad + ' ' + Quoted(folder / "out")).exitCode, 1);
  EXPECT_FALSE(std::filesystem::exists(folder / "out"));
}

TEST(Tool, AFileIsCopiedOverItselfButNoNoteReplacesIt) {
  const TempFolder folder;
  WriteBytes(folder / "in", Opml("<outline text=\"a\"/>"));
  const std::string in = Quoted(folder / "in");
  EXPECT_EQ(RunTool("copy " + in + ' ' + in).exitCode, 0);
  EXPECT_EQ(RunTool("note " + in + " a " + in).exitCode, 2);
  EXPECT_EQ(ReadBytes(folder / "in"), SavedOpml(Tree("root(a())")));
}

TEST(Tool, DateTellsWhatBothReadersAnswer) {
  const Outcome both = RunTool("date \"Sun, 06 Nov 1994 08:49:37 EST\" 1994-11-06");
  EXPECT_EQ(both.exitCode, 0) << both.errors;
  EXPECT_THAT(both.out,
              testing::StartsWith(
                  "Sun, 06 Nov 1994 08:49:37 EST\n"
                  "  GetTime   found      1994-11-06T03:49:37Z    784093777\n"
                  "  ReadDate  found      1994-11-06T13:49:37Z    784129777  zone -05:00, RFC 822\n"
                  "1994-11-06\n"
                  "  GetTime   not found  20"));
  EXPECT_THAT(both.out, HasSubstr("(now)\n"
                                  "  ReadDate  found      1994-11-06T00:00:00Z    784080000  zone "
                                  "unknown, ISO 8601\n"));

  EXPECT_THAT(
      RunTool("date 1994-11-06T10:00:00+05:30 \"Nov 6 1994\" 1994/11/06").out,
      testing::AllOf(HasSubstr("zone +05:30, ISO 8601\n"), HasSubstr("zone unknown, month first\n"),
                     HasSubstr("zone unknown, loose\n")));
  const Outcome none = RunTool("date 1994-11-31 1994");
  EXPECT_EQ(none.exitCode, 1);
  EXPECT_THAT(none.out, HasSubstr("  ReadDate  not found\n"));
}

TEST(ToolNote, ExportsTheItemThatIsMeant) {
  constexpr char kNobody[] = "no item has the name or identity";
  const struct {
    const char* file;
    const char* item;
    const char* answer;  // the title, or what the error is
  } cases[] = {
      {"collection_tree.opml", "Morning", "<title>Morning</title>"},
      {"collection_tree.opml", "\"News > Morning\"", "<title>Morning</title>"},
      {"collection_tree.opml", "00000000-0000-4000-8000-000000000002", "<title>Daily</title>"},
      {"collection.rss", "id-page", "<title>page</title>"},
      {"colct_list.xml", "\"Checked in\"", "<title>Checked in</title>"},
      {"search_engines.xml", "\"Images <new>\"", "<title>Images <new></title>"},
      {"search_engines.xml", "\"\"", kNobody},
      {"collection.rss", "nobody", kNobody},
      {"tags.xml", "t1", kNobody},
  };
  for (const auto& c : cases) {
    const TempFolder folder;
    const Outcome note =
        RunTool("note " + In(c.file) + ' ' + c.item + ' ' + Quoted(folder / "n.html"));
    EXPECT_EQ(note.exitCode, c.answer == kNobody);
    EXPECT_THAT(note.errors + ReadBytes(folder / "n.html"), HasSubstr(c.answer));
    EXPECT_EQ(std::filesystem::exists(folder / "n.html"), c.answer != kNobody);
  }
}

TEST(ToolNote, ANameThatTwoItemsHaveIsNotGuessedAt) {
  const TempFolder folder;
  WriteBytes(folder / "in", Opml("<outline text='a'><outline text='x'/></outline><outline text='b'>"
                                 "<outline text='x'><sx:sync id='second'/></outline></outline>"));
  const std::string note = "note " + Quoted(folder / "in") + ' ';
  const Outcome shared = RunTool(note + "x -");
  EXPECT_EQ(shared.exitCode, 1);
  EXPECT_EQ(shared.out, "");
  EXPECT_THAT(shared.errors,
              HasSubstr("2 items are called 'x'; name one by its folders or its identity: "
                        "a > x (no identity); b > x (second)\n"));
  for (const char* const one : {"\"a > x\" -", "second -"})
    EXPECT_THAT(RunTool(note + one).out, HasSubstr("<title>x</title>")) << one;
  std::string many;
  for (int i = 0; i < 12; ++i) many += "<outline text='x'/>";
  WriteBytes(folder / "in", Opml(many));
  EXPECT_THAT(RunTool(note + "x -").errors, HasSubstr("; x (no identity) and 2 more\n"));
}

}  // namespace vosmere::test::vosmere_tool
