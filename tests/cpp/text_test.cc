#include "vosmere/cpp/text.h"

#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "tests/support/failing_memory.h"

namespace vosmere {
namespace {

TEST(Wide, TakesEveryKindOfText) {
  const char* const nothing = nullptr;
  const std::u16string text = u"Å日😀";
  const Wide own(text);
  for (const Wide& wide : {Wide("Å日😀"), Wide(u8"Å日😀"), Wide(u"Å日😀"), Wide(std::string("Å日😀")),
                           Wide(std::u16string_view(text)), Wide(own.get())})
    EXPECT_EQ(ToUtf16(wide), text);
  EXPECT_EQ(ToUtf8(text), "Å日😀");
  EXPECT_EQ(ToUtf16(Wide(std::string(1000, 'x'))), std::u16string(1000, u'x'));
  EXPECT_EQ(Wide(nothing).get(), nullptr);
  EXPECT_EQ(Wide(nullptr).get(), nullptr);
  EXPECT_EQ(ToUtf16(Wide(std::string_view())), u"");
  EXPECT_NE(Wide(std::string_view()).get(), nullptr) << "an empty text is not null";
}

TEST(TextView, ShowsNullAndEmpty) {
  const Wide empty("");
  EXPECT_TRUE(TextView(nullptr).IsNull() && TextView(nullptr) == "" && TextView(nullptr).empty());
  EXPECT_TRUE(!TextView(empty).IsNull() && TextView(empty) == u"" && TextView(empty).empty());
  EXPECT_FALSE(TextView(nullptr) == "x" || TextView(empty) == u8"é" || TextView(nullptr) == u"x");
  std::ostringstream out;
  out << "[" + TextView(Wide("Å")) + "]" << TextView(Wide("日")) << TextView(nullptr);
  EXPECT_EQ(out.str(), "[Å]日");
}

/// Texts of whole characters and of pieces of them, some longer than one piece of a comparison.
std::string AnyBytes(std::mt19937& random) {
  constexpr std::string_view kParts[] = {"a",        "b",    "é",    "€",   "😀",
                                         "\xE2\x82", "\xF0", "\x80", "\xFF"};
  std::string bytes;
  const std::size_t length = random() % 4 ? random() % 8 : random() % 300;
  const std::size_t kinds = random() % 2 ? std::size(kParts) : 5;
  while (bytes.size() < length) bytes += kParts[random() % kinds];
  return bytes;
}

TEST(TextView, EqualsExactlyWhatTheBytesBecome) {
  std::mt19937 random(7);
  std::string before;
  for (int i = 0; i < 20000; ++i) {
    const std::string bytes = AnyBytes(random);
    const Wide wide(bytes);
    const TextView text(wide);
    ASSERT_TRUE(text == bytes && text == ToUtf16(wide)) << testing::PrintToString(bytes);
    ASSERT_EQ(text == before, ToUtf16(wide) == ToUtf16(Wide(before)))
        << testing::PrintToString(bytes) << " and " << testing::PrintToString(before);
    ASSERT_FALSE(text == bytes + "a" || text == bytes + "é" || text == ToUtf16(wide) + u"a");
    before = random() % 2 ? bytes.substr(0, bytes.size() / 2) : bytes;
  }
}

TEST(TextView, ComparesAndTakesShortTextsWithoutMemory) {
  const Wide name(std::string(1000, 'x') + "Å日😀");
  const std::string utf8 = ToUtf8(name);
  const std::u16string utf16 = ToUtf16(name);
  const test::FailingMemory memory(0);
  const TextView text(name);
  EXPECT_TRUE(text == utf8 && text == utf16 && text == name.get() && !(text == "x"));
  EXPECT_TRUE(TextView(Wide("a name as long as names of items mostly are")) ==
              "a name as long as names of items mostly are");
  EXPECT_FALSE(memory.Failed());
}

}  // namespace
}  // namespace vosmere
