// Readers for files that contain the registry of a Windows user.
#pragma once

#include <memory>
#include <string>

#include "vosmere/base/types.h"

namespace vosmere {

/// The largest file that is read, in bytes.
inline constexpr std::size_t kRegistryFileLimit = 256 << 20;
/// The most keys of the user that a file may have. It bounds the memory for their index.
inline constexpr std::size_t kRegistryKeyLimit = 1'000'000;

/// The content of such a file. Paths of keys are relative to HKEY_CURRENT_USER, in UTF-16 with
/// backslashes. Names of keys and values are case-insensitive (ASCII). Not thread-safe. All
/// operations throw std::bad_alloc.
class RegistryFile {
 public:
  RegistryFile() = default;
  RegistryFile(const RegistryFile&) = delete;
  RegistryFile& operator=(const RegistryFile&) = delete;
  virtual ~RegistryFile();

  /// Whether the key exists.
  virtual bool HasKey(const std::u16string& key) const = 0;
  /// Reads the bytes of a value as the registry stores them: texts are null-terminated UTF-16.
  /// False when the value does not exist.
  virtual bool ReadValue(const std::u16string& key, const std::u16string& name,
                         std::string* bytes) const = 0;
};

/// Parses the text of a Wine prefix's registry or of an exported one. Null when it is neither, and
/// when it has too many keys.
std::unique_ptr<RegistryFile> OpenRegistryText(std::string bytes);

/// Opens a hive. Null when the file cannot be read, is too large or is damaged.
std::unique_ptr<RegistryFile> OpenRegistryHive(const WChar* path);

}  // namespace vosmere
