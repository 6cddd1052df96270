#include "vosmere/text/write_file.h"

#include "tests/support/test.h"

namespace vosmere::test::write_file {

class WriteFile : public testing::Test {
 protected:
  std::string Written() { return ReadBytes(folder / "file"); }

  const TempFolder folder;
  const Wide path = W(folder / "file");
  CWriteFile writer;
};

TEST_F(WriteFile, WritesTextAsUtf8AndBytesAsTheyAre) {
  WriteBytes(folder / "file", "a long old text");
  ASSERT_TRUE(writer.OpenFile(path));
  EXPECT_TRUE(writer.WriteData(W("ß😀\n")));
  EXPECT_TRUE(writer.WriteStreamData("\xFF\0\r\n", 4));
  EXPECT_TRUE(writer.WriteStreamData("", 0));
  EXPECT_EQ(Written(), "ß😀\n" + std::string("\xFF\0\r\n", 4)) << "while it is open";
}

TEST_F(WriteFile, AppendingOverwritesFromTheStart) {
  WriteBytes(folder / "file", "0123456789");
  ASSERT_TRUE(writer.OpenFileAppend(path));
  EXPECT_TRUE(writer.WriteData(W("abc")));
  EXPECT_EQ(Written(), "abc3456789");
  ASSERT_TRUE(writer.OpenFileAppend(W(folder / "new")));
  EXPECT_TRUE(std::filesystem::exists(folder / "new"));
}

TEST_F(WriteFile, RefusesWhatItIsNotToWrite) {
  ASSERT_TRUE(writer.OpenFile(path));
  EXPECT_FALSE(writer.WriteData(W("")) || writer.WriteData(nullptr));
  EXPECT_FALSE(writer.WriteStreamData("x", -1));
  EXPECT_EQ(Written(), "");
}

TEST_F(WriteFile, WithoutAnOpenFileNothingIsWritten) {
  for (const Wide& bad : {W(folder / "no" / "file"), W(folder / "."), Wide(nullptr)}) {
    for (const auto open : {&CWriteFile::OpenFile, &CWriteFile::OpenFileAppend}) {
      ASSERT_TRUE((writer.*open)(path));
      EXPECT_FALSE((writer.*open)(bad));
      EXPECT_FALSE(writer.WriteData(W("x")) || writer.WriteStreamData("", 0));
      ASSERT_TRUE((writer.*open)(path) && writer.CloseFile());
      EXPECT_FALSE(writer.WriteData(W("x")));
    }
  }
}

}  // namespace vosmere::test::write_file
