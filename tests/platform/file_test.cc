#include "vosmere/platform/internal/file.h"

#include "tests/support/test.h"

namespace vosmere::test::file {

TEST(File, WritesAndReadsPiecesOfAnySizeInOrder) {
  const TempFolder folder;
  std::string whole;
  std::vector<std::string> texts;
  for (const std::size_t size : {3, 0, 4096, 262143, 1, 262144, 2, 1000000, 5})
    whole += texts.emplace_back(size, static_cast<char>('a' + texts.size()));
  for (int i = 0; i < 3000; ++i) whole += texts.emplace_back(std::to_string(i));
  std::vector<FilePiece> pieces;
  for (const std::string& text : texts) pieces.push_back({text.data(), text.size()});

  File file;
  ASSERT_TRUE(file.Create(W(folder / "file")));
  EXPECT_TRUE(file.Write(pieces.data(), pieces.size()));
  EXPECT_TRUE(file.Write(pieces.data(), 1));
  EXPECT_TRUE(file.Write(nullptr, 0));
  file.Close();

  ASSERT_TRUE(file.Open(W(folder / "file")));
  std::uint64_t size = 0;
  EXPECT_TRUE(file.Size(&size));
  EXPECT_EQ(size, whole.size() + 3);
  std::string read;
  char bytes[1000];
  for (std::size_t got = 1; got > 0; read.append(bytes, got))
    ASSERT_TRUE(file.Read(bytes, sizeof bytes, &got));
  EXPECT_TRUE(read == whole + "aaa");
}

TEST(File, CreateCutsLetsOthersReadAndItsHandleMoves) {
  const TempFolder folder;
  WriteBytes(folder / "file", "a long old text");
  File first, third;
  ASSERT_TRUE(first.Create(W(folder / "file")));
  File second(std::move(first));
  third = std::move(second);
  const FilePiece piece = {"new", 3};
  EXPECT_TRUE(third.Write(&piece, 1));
  EXPECT_EQ(ReadBytes(folder / "file"), "new");
}

TEST(File, WhatDoesNotOpenSaysWhyAndDoesNothing) {
  const TempFolder folder;
  WriteBytes(folder / "file", "");
  const FilePiece piece = {"x", 1};
  char byte;
  std::size_t got;
  std::uint64_t size;
  File file;
  for (const Wide& path :
       {W(folder / "missing"), W(folder / "."), W(folder / "no" / "file"), W("")}) {
    ASSERT_TRUE(file.Open(W(folder / "file")));
    EXPECT_FALSE(file.Open(path));
    EXPECT_FALSE(file.IsOpen());
    EXPECT_NE(file.error(), 0u);
    EXPECT_FALSE(file.Read(&byte, 1, &got) || file.Write(&piece, 1) || file.Size(&size));
  }
  EXPECT_FALSE(file.Open(nullptr) || file.Create(W(folder / ".")));
  EXPECT_FALSE(file.Create(W(folder / "no" / "file")));
  EXPECT_NE(file.error(), 0u);
}

TEST(File, NamesBeyondAsciiAndBothSeparatorsWork) {
  const TempFolder folder;
  std::filesystem::create_directories(folder / "sub");
  std::u16string path = (folder / "sub" / "x").u16string();
  path.back() = u'Ж';
  path[path.size() - 2] = u'\\';
  File file;
  EXPECT_TRUE(file.Create(W(path)));
  path[path.size() - 2] = u'/';
  EXPECT_TRUE(file.Open(W(path)));
}

}  // namespace vosmere::test::file
