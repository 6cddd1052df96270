// Paths that are not regular files: pipes and devices, some of which have the names of files.
#include <windows.h>

#include "tests/support/test.h"
#include "vosmere/text/read_file.h"
#include "vosmere/text/write_file.h"

namespace vosmere::test::special_file {

void ExpectNoPlainFile(const Wide& path) {
  EXPECT_FALSE(CReadFile().OpenFile(path)) << Utf8(path);
  EXPECT_FALSE(CWriteFile().OpenFile(path)) << Utf8(path);
  EXPECT_FALSE(CWriteFile().OpenFileAppend(path)) << Utf8(path);
}

TEST(SpecialFile, ADeviceIsNoPlainFileAndNobodyWaitsForIt) {
  const TempFolder folder;
  for (const Wide& path : {W("NUL"), W("CON"), W("CONIN$"), W("CONOUT$"), W(folder / "nul")})
    ExpectNoPlainFile(path);
}

TEST(SpecialFile, APipeIsNoPlainFileAndNobodyWaitsForIt) {
  const std::string name = "\\\\.\\pipe\\vosmere-test-" + std::to_string(::GetCurrentProcessId());
  const HANDLE pipe =
      ::CreateNamedPipeA(name.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE, 1, 64, 64, 0, nullptr);
  ASSERT_NE(pipe, INVALID_HANDLE_VALUE);
  EXPECT_FALSE(CReadFile().OpenFile(W(name)));
  ::DisconnectNamedPipe(pipe);
  EXPECT_FALSE(CWriteFile().OpenFile(W(name)));
  ::CloseHandle(pipe);
}

}  // namespace vosmere::test::special_file
