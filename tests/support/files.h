// Files in tests: a folder that goes away with the test, and whole files as bytes.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <utility>

#include "tests/support/wide.h"

namespace vosmere::test {

inline std::string ReadBytes(const std::filesystem::path& path) {
  std::ostringstream bytes;
  bytes << std::ifstream(path, std::ios::binary).rdbuf();
  return std::move(bytes).str();
}

inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

/// Where a file of tests/data is.
inline std::filesystem::path TestPath(const std::string& name) {
  return std::filesystem::path(VOSMERE_TEST_DATA) / name;
}
/// A file of tests/data, byte for byte.
inline std::string TestData(const std::string& name) {
  return ReadBytes(TestPath(name));
}

/// A new empty folder.
class TempFolder {
 public:
  TempFolder()
      : path_(std::filesystem::temp_directory_path() /
              ("vosmere-test-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directories(path_);
  }
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  /// `name` is UTF-8.
  std::filesystem::path operator/(const std::string& name) const {
    return path_ / std::u8string(name.begin(), name.end());
  }

 private:
  std::filesystem::path path_;
};

/// A path as the library takes it.
inline Wide W(const std::filesystem::path& path) {
  return Wide(std::u16string_view(path.u16string()));
}

}  // namespace vosmere::test
