// The verbs diff and merge, run as users and scripts run them.
#include "tests/support/test.h"
#include "tests/support/tool.h"

namespace vosmere::test::diff {

std::string Opml(const std::string& outlines) {
  return "<opml version=\"2.0\"><head><title>List</title></head><body>" + outlines +
         "</body></opml>";
}
std::string Feed(const std::string& name, const std::string& more = "") {
  return "<outline text=\"" + name + "\"" + more + " type=\"rss\" xmlUrl=\"" + name + "/\"/>";
}

TEST(Tool, DiffsAndMergesTrees) {
  const TempFolder folder;
  const auto file = [&](const char* name, const std::string& bytes) {
    WriteBytes(folder / name, bytes);
    return ' ' + Quoted(folder / name);
  };
  const std::string base = file("base", Opml(Feed("a") + "<outline text=\"N\"/>"));
  const std::string ours =
      file("ours", Opml("<outline text=\"N\">" + Feed("a", " description=\"o\"") + "</outline>"));
  const std::string theirs = file("theirs", Opml(Feed("a", " description=\"t\"") + Feed("b")));
  const Outcome diff = RunTool("diff" + base + ours), json = RunTool("diff --json" + base + ours);
  EXPECT_EQ(diff.out, "~ N > a: moved from the top; description: '' -> 'o'\n") << diff.errors;
  EXPECT_EQ(diff.exitCode, 1);
  EXPECT_THAT(json.out, HasSubstr("\"after\":\"o\""));
  EXPECT_EQ(RunTool("diff" + base + base).exitCode, 0);
  EXPECT_EQ(RunTool("diff" + base + file("bad", "<opml")).exitCode, 2);

  const std::string out = ' ' + Quoted(folder / "out"), all = " --base" + base + ours + theirs;
  EXPECT_EQ(RunTool("merge --dry-run" + all).out, "+ b\n");
  const Outcome merge = RunTool("merge" + all + " -o" + out);
  EXPECT_EQ(merge.exitCode, 0) << merge.errors;
  EXPECT_THAT(merge.errors, HasSubstr("conflict: N > a: description: ours 'o', theirs 't'"));
  EXPECT_EQ(RunTool("diff" + ours + out).out, "+ b\n");
}

TEST(Tool, TakesOddFilesOrSaysWhyNot) {
  const TempFolder folder;
  const std::string in = Quoted(folder / "in"), no = Quoted(folder / "no"),
                    same = Quoted(folder / "same"), dir = Quoted(folder / "dir"),
                    out = Quoted(folder / "no" / "out");
  for (const char* const name : {"in", "same"}) WriteBytes(folder / name, Opml(Feed("a")));
  std::filesystem::create_directory(folder / "dir");
  const struct {
    std::string arguments;
    int exitCode;
  } rows[] = {
      {"diff - " + in, 0},
      {"diff - -", 2},  // nothing is left for the second
      {"diff " + in + ' ' + dir, 2},
      {"merge - " + in + " -o -", 0},
      {"merge " + in + ' ' + in + " -o " + in, 0},
      {"merge " + no + ' ' + in + " -o " + in, 2},
      {"merge " + in + ' ' + dir + " -o " + in, 2},
      {"merge " + in + ' ' + in + " -o " + dir, 2},
      {"import - -o " + in, 0},
      {"import - --into " + in, 0},
      {"import " + in + " -o " + in, 0},
      {"import " + dir + " -o " + in, 2},
      {"import " + in + " --into " + no, 2},
      {"import " + in + " -o " + out, 2},
  };
  for (const auto& [arguments, exitCode] : rows) {
    const Outcome outcome = RunTool(arguments + " <" + same);
    EXPECT_EQ(outcome.exitCode, exitCode) << arguments << ": " << outcome.errors;
    EXPECT_EQ(outcome.errors.empty(), exitCode == 0) << arguments << ": " << outcome.errors;
    EXPECT_EQ(RunTool("diff " + in + ' ' + same).exitCode, 0) << arguments;
  }
}

// With itself nothing differs; with one of another kind it is no use.
TEST(Tool, DiffsEveryKindOfDocument) {
  int documents = 0;
  const std::filesystem::path data(VOSMERE_TEST_DATA);
  const std::string other = ' ' + Quoted(data / "collection_tree.opml");
  for (const auto& entry : std::filesystem::directory_iterator(data)) {
    if (!std::filesystem::exists(entry.path().string() + ".json")) continue;
    const std::string file = ' ' + Quoted(entry.path());
    const Outcome same = RunTool("diff" + file + file);
    EXPECT_EQ(std::to_string(same.exitCode) + same.out + same.errors, "0") << file;
    EXPECT_EQ(RunTool("diff" + file + other).exitCode, file == other ? 0 : 2) << file;
    ++documents;
  }
  EXPECT_EQ(documents, 11);
}

}  // namespace vosmere::test::diff
