// Documents that a script hands over in one file: each is its length, four bytes with the lowest
// first, and its bytes.
#pragma once

#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace vosmere::report {

inline std::vector<std::string> DocumentsIn(const char* path) {
  std::ifstream in(path, std::ios::binary);
  const std::string all{std::istreambuf_iterator<char>(in), {}};
  std::vector<std::string> documents;
  for (std::size_t at = 0; at + 4 <= all.size();) {
    std::size_t size = 0;
    for (int i = 4; i-- > 0;) size = size << 8 | static_cast<unsigned char>(all[at + i]);
    documents.push_back(all.substr(at + 4, size));
    at += 4 + size;
  }
  return documents;
}

}  // namespace vosmere::report
