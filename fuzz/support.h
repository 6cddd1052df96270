// What several fuzz targets need.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"

namespace vosmere::fuzz {

/// Makes the fuzzer stop and keep the input.
inline void Require(bool holds) {
  if (!holds) std::abort();
}

inline std::string_view View(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// The path of a file that this process may write again and again.
inline const std::string& ScratchPath() {
  static const std::string path =
      std::filesystem::temp_directory_path() / ("vosmere-fuzz-" + std::to_string(getpid()));
  return path;
}

inline void WriteScratch(std::string_view bytes) {
  std::ofstream(ScratchPath(), std::ios::binary) << bytes;
}

/// The same text as UTF-16, null-terminated, if the bytes are a document whose encoding does not
/// depend on a declaration; otherwise empty. Such a document must load as text as it does as bytes.
inline std::u16string AsText(std::string_view bytes) {
  if (bytes.find("encoding") != bytes.npos || bytes.find('\0') != bytes.npos) return {};
  std::u16string units;
  for (std::size_t i = 0; i < bytes.size();) {
    const auto lead = static_cast<unsigned char>(bytes[i++]);
    if (lead >= 0x80) return {};  // the decoder has a target of its own
    units += static_cast<char16_t>(lead);
  }
  return units;
}

}  // namespace vosmere::fuzz
