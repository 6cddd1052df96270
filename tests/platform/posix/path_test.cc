#include "vosmere/platform/path.h"

#include <random>

#include "tests/support/test.h"
#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/posix/path.h"

namespace vosmere::test::path {

TEST(Path, SaysWhatIsTextAsItIsAndEveryOtherByteAlone) {
  const struct {
    const char* name;
    const char* path;
  } cases[] = {
      {"", ""},
      {"/tmp/Größe 日本語 😀\uFFFD", "/tmp/Größe 日本語 😀\uFFFD"},
      {"caf\xE9.opml", "caf\\uDCE9.opml"},
      {"x\\z", "x\\uDC5Cz"},
      {"\xF0\x9F\x98", "\\uDCF0\\uDC9F\\uDC98"},    // a cut emoji
      {"😀\x80\xC0\x80", "😀\\uDC80\\uDCC0\\uDC80"},  // after a pair; an overlong zero
      {"\xED\xA0\xBD\xED\xB8\x80", "\\uDCED\\uDCA0\\uDCBD\\uDCED\\uDCB8\\uDC80"},  // surrogates
  };
  for (const auto& c : cases) EXPECT_EQ(OwnedBstr(PathFromName(c.name)).utf8(), c.path);
  EXPECT_EQ(PathFromName(nullptr), nullptr);
}

TEST(Path, LeadsBackToEveryName) {
  const char* const pieces[] = {"a",    "/",      "\\",          "é",        "€",
                                "😀",    "\uFFFD", "\xE2\x82",    "\xF0\x9F", "\x80",
                                "\xDC", "\xFF",   "\xED\xA0\x80"};
  std::mt19937 random(1);
  for (int i = 0; i < 10000; ++i) {
    std::string name;
    for (std::size_t count = random() % 8; count-- > 0;)
      name += pieces[random() % std::size(pieces)];
    const OwnedBstr path(PathFromName(name.c_str()));
    char back[PATH_MAX];
    ASSERT_TRUE(NativePath(path.get(), back));
    ASSERT_EQ(back, name) << path.utf8();
  }
}

TEST(Path, OpensTheFileThatTheSystemKnowsByTheName) {
  const TempFolder folder;
  const std::string name = folder / "caf\xE9\\z";
  File file;
  ASSERT_TRUE(file.Create(OwnedBstr(PathFromName(name.c_str())).get()));
  EXPECT_TRUE(std::filesystem::exists(name));
}

TEST(Path, TooLongIsAnError) {
  char name[PATH_MAX];
  for (const char16_t* unit : {u"x", u"\xDCFF", u"\xD83D\xDE00"}) {
    std::u16string path;
    while (path.size() < PATH_MAX) path += unit;
    EXPECT_FALSE(NativePath(W(path), name));
    path.resize(PATH_MAX / 4);
    EXPECT_TRUE(NativePath(W(path), name));
  }
}

}  // namespace vosmere::test::path
