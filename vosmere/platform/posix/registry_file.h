// Files that hold the registry of a Windows user.
#pragma once

#include <memory>
#include <string>

#include "vosmere/base/types.h"

namespace vosmere {

/// Larger files are refused.
inline constexpr std::size_t kRegistryFileLimit = 256 << 20;
/// So are files with more keys of the user's, whose index would not fit the memory.
inline constexpr std::size_t kRegistryKeyLimit = 1'000'000;

/// One reading of such a file. Paths of keys are relative to HKEY_CURRENT_USER, in UTF-16 with
/// backslashes, and are found without regard to ASCII case. One thread at a time. Everything throws
/// std::bad_alloc.
class RegistryFile {
 public:
  RegistryFile() = default;
  RegistryFile(const RegistryFile&) = delete;
  RegistryFile& operator=(const RegistryFile&) = delete;
  virtual ~RegistryFile();

  virtual bool HasKey(const std::u16string& key) const = 0;
  /// The value's bytes as the registry keeps them, texts as UTF-16 with a terminating zero.
  virtual bool ReadValue(const std::u16string& key, const std::u16string& name,
                         std::string* bytes) const = 0;
};

/// Null when the bytes are not the text of a registry: a Wine prefix's or an exported one.
std::unique_ptr<RegistryFile> OpenRegistryText(std::string bytes);

/// Null when the file is not a sound hive, or cannot be read.
std::unique_ptr<RegistryFile> OpenRegistryHive(const WChar* path);

}  // namespace vosmere
