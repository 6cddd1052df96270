#include "vosmere/text/read_file.h"

#include "tests/support/test.h"

namespace vosmere::test::read_file {

class ReadFile : public testing::Test {
 protected:
  void Open(const std::string& bytes, std::uintmax_t size) {
    reader.CloseFile();
    WriteBytes(folder / "file", bytes);
    std::filesystem::resize_file(folder / "file", size);
    ASSERT_TRUE(reader.OpenFile(path));
  }
  void Open(const std::string& bytes) { Open(bytes, bytes.size()); }

  std::string RestAsText(int* count) {
    BSTR text = nullptr;
    *count = reader.ReadAllToBuffer(&text);
    return OwnedBstr(text).utf8();
  }
  std::string RestAsBytes() {
    char* bytes = nullptr;
    int count = 7;
    const bool read = reader.ReadToBuffer(&bytes, &count);
    const std::string rest = read ? std::string(bytes, count) : "(" + std::to_string(count) + ")";
    CReadFile::Delete(bytes);
    return rest;
  }

  const TempFolder folder;
  const Wide path = W(folder / "file");
  CReadFile reader;
};

TEST_F(ReadFile, TextCountsTheZeroUnitThatEndsIt) {
  const struct {
    std::string bytes, text;
  } cases[] = {{"abc", "abc"},
               {"\xEF\xBB\xBFß\r\n", "\uFEFFß\r\n"},  // the byte-order mark stays
               {std::string("a\0b", 3), std::string("a\0b", 3)},
               {"a\xFFz\xF0\x9F\x98", "a\uFFFDz\uFFFD"},
               {std::string(100000, 'x') + "ß", std::string(100000, 'x') + "ß"}};
  int count = 0;
  for (const auto& c : cases) {
    Open(c.bytes);
    EXPECT_EQ(RestAsText(&count), c.text + '\0');
    EXPECT_EQ(count, static_cast<int>(c.bytes.size()));
  }
  EXPECT_EQ(RestAsText(&count), "(null)") << "there is no more";
  EXPECT_EQ(count, 0);
}

TEST_F(ReadFile, ReadsOnFromWhereItIs) {
  Open("aabbcddde\n");
  char bytes[8] = {};
  WChar units[8] = {};
  EXPECT_EQ(reader.ReadToBuffer(bytes, 2), 2);
  EXPECT_STREQ(bytes, "aa");
  EXPECT_EQ(reader.ReadToBuffer(units, 1), 1);
  EXPECT_EQ(units[0], 'b' << 8 | 'b');
  EXPECT_EQ(reader.ReadToBuffer(bytes, 0) + reader.ReadToBuffer(units, -1), 0);
  EXPECT_EQ(reader.ReadToBuffer(bytes, 1), 1);
  EXPECT_EQ(reader.ReadToBuffer(units, 8), 2) << "and an odd byte is lost";
  EXPECT_EQ(reader.ReadToBuffer(bytes, 8), 0);
  EXPECT_EQ(RestAsBytes(), "(0)");
  EXPECT_EQ(reader.GetFileSize(), 10u);

  Open("aa" + std::string(100000, '\0'));
  reader.ReadToBuffer(bytes, 2);
  EXPECT_TRUE(RestAsBytes() == std::string(100000, '\0'));
}

TEST_F(ReadFile, SizesAtTheLimits) {
  int count = 7;
  Open("", 0);
  EXPECT_EQ(RestAsBytes(), "(0)");
  const bool hasZeros = std::filesystem::exists("/dev/zero");  // faster than a file
  hasZeros ? void(reader.OpenFile(W("/dev/zero"))) : Open("", 104857600);
  EXPECT_EQ(RestAsText(&count), "(null)") << "100 MiB is too much for a text";
  EXPECT_EQ(count, 0);
  Open("", 0x100000001);
  EXPECT_EQ(RestAsBytes(), "(0)") << "the count does not fit an int";
  EXPECT_EQ(reader.GetFileSize(), 1u) << "the low half";
}

TEST_F(ReadFile, WithoutAnOpenFileEverythingFails) {
  for (const Wide& bad : {W(folder / "missing"), W(folder / "."), Wide(nullptr)}) {
    Open("abc");
    reader.CloseFile();
    EXPECT_EQ(reader.GetFileSize(), 0xFFFFFFFF);
    Open("abc");
    EXPECT_FALSE(reader.OpenFile(bad));
    EXPECT_EQ(Utf8(reader.GetFileName()), Utf8(bad));
    char byte;
    WChar unit;
    int count = 7;
    EXPECT_EQ(reader.GetFileSize(), 0xFFFFFFFF);
    EXPECT_EQ(reader.ReadToBuffer(&byte, 1) + reader.ReadToBuffer(&unit, 1), 0);
    EXPECT_EQ(RestAsBytes(), "(0)");
    EXPECT_EQ(RestAsText(&count), "(null)");
    EXPECT_EQ(count, 0);
  }
}

TEST_F(ReadFile, WithoutMemoryThereIsNoText) {
  Open(std::string(10000, 'x'));
  const auto read = [this] {
    BSTR text = nullptr;
    if (reader.OpenFile(path)) reader.ReadAllToBuffer(&text);
    reader.CloseFile();
    reader.OpenFile(nullptr);
    return text;
  };
  SysFreeString(read());
  ExpectNullAtEachFailure(read, SysFreeString);
}

}  // namespace vosmere::test::read_file
