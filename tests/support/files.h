// Files in tests: a folder that goes away with the test, and whole files as bytes.
#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

/// The path of a file in tests/data.
inline std::filesystem::path TestPath(const std::string& name) {
  return std::filesystem::path(VOSMERE_TEST_DATA) / name;
}
/// A file of tests/data, byte for byte.
inline std::string TestData(const std::string& name) {
  return ReadBytes(TestPath(name));
}

/// The rows of a table in tests/data: a line each, its cells between bars, `\r`, `\n`, `\t`, `\0`
/// and `\xHH` in place of those bytes. Lines without a bar are comments.
inline std::vector<std::vector<std::string>> TestTable(const std::string& name) {
  std::vector<std::vector<std::string>> rows;
  std::istringstream lines(TestData(name));
  for (std::string line; std::getline(lines, line);) {
    std::vector<std::string> row(1);
    for (std::size_t i = 0; i < line.size(); ++i) {
      constexpr std::string_view kLetters = "rnt0", kBytes("\r\n\t\0", 4);
      const std::size_t letter =
          line[i] == '\\' && i + 1 < line.size() ? kLetters.find(line[i + 1]) : kLetters.npos;
      if (line.compare(i, 2, "\\x") == 0) {
        row.back() += static_cast<char>(std::stoi(line.substr(i + 2, 2), nullptr, 16));
        i += 3;
      } else if (line[i] == '|')
        row.emplace_back();
      else
        row.back() += letter == kLetters.npos ? line[i] : kBytes[letter];
      i += letter != kLetters.npos;
    }
    if (row.size() > 1) rows.push_back(row);
  }
  return rows;
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
