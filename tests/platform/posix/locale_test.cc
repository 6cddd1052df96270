// The system's code page is the locale's.
#include <locale.h>

#include <cstdlib>

#include "tests/support/loopback_server.h"
#include "tests/support/platform.h"
#include "tests/support/sender.h"
#include "tests/support/test.h"
#include "tests/support/tool.h"
#include "vosmere/text/unicode_tool.h"

// The C library leaks locales that it finds by LOCPATH.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions() {
  return "leak:argz_add_sep";
}

namespace vosmere::test::locale {

/// Makes a locale with Latin-1 in the folder, because few systems have one that is not UTF-8.
std::string MakeLatin1Locale(const TempFolder& folder) {
  WriteBytes(folder / "map", "<code_set_name> ISO-8859-1\nCHARMAP\nEND CHARMAP\n");
  WriteBytes(folder / "source", "LC_CTYPE\nEND LC_CTYPE\n");
  const std::string path = folder / "";
  // localedef complains about everything that is missing, but makes the locale.
  EXPECT_NE(std::system(("localedef -c -f " + path + "map -i " + path + "source " + path +
                         "latin1 >/dev/null 2>&1")
                            .c_str()),
            -1);
  return path;
}

/// Sets the locale of this thread while it lives.
class Locale {
 public:
  explicit Locale(const char* name)
      : locale_(newlocale(LC_CTYPE_MASK, name, nullptr)), before_(uselocale(locale_)) {
    EXPECT_TRUE(locale_) << name;
  }
  Locale(const Locale&) = delete;
  Locale& operator=(const Locale&) = delete;
  ~Locale() {
    uselocale(before_);
    if (locale_) freelocale(locale_);
  }

 private:
  locale_t locale_, before_;
};

std::string InSystemsCodePage(const Wide& text) {
  char* bytes = nullptr;
  int length = 0;
  EXPECT_TRUE(CUnicodeTool::TCHARGetASCII(text, &bytes, &length));
  const std::string result(bytes, length);
  CUnicodeTool::DeleteBuffer(bytes);
  return result;
}

TEST(Locale, GivesUploadsTheirCodePageAndUtf8WhereThereIsNone) {
  const TempFolder folder;
  const Variable path("LOCPATH", MakeLatin1Locale(folder).c_str());
  WriteBytes(folder / "é☃.xml", "x");
  const struct {
    const char* locale;
    std::string name;
  } cases[] = {{"C", "é☃.xml"}, {"C.UTF-8", "é☃.xml"}, {"latin1", "\xE9?.xml"}};
  for (const auto& c : cases) {
    const Locale locale(c.locale);
    EXPECT_EQ(InSystemsCodePage(W("é☃.xml")), c.name);

    LoopbackServer server({ReplyOk()});
    Sender sender(server.host());
    EXPECT_TRUE(sender.upload.UploadFile(W(folder / "é☃.xml")));
    const std::string end = "/" + c.name + "\"\r\n";
    EXPECT_THAT(server.requests().at(0), HasSubstr(end));
    const Outcome dryRun =
        RunTool("post a.example / " + Quoted(folder / "é☃.xml") + " --dry-run",
                "ASAN_OPTIONS=detect_leaks=0 LC_ALL=" + std::string(c.locale) + ' ');
    EXPECT_THAT(dryRun.bytes, HasSubstr(end));
  }
}

}  // namespace vosmere::test::locale
