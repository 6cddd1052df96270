// The file that serves as the current user's registry, and the folder it comes from.
#pragma once

#include <memory>
#include <string>

#include "vosmere/platform/posix/registry_file.h"

namespace vosmere {

/// A registry file after reading.
struct UserRegistry {
  enum Kind { kHive, kWinePrefix, kExported };

  Kind kind;
  std::u16string folder;  ///< of the file, with a separator at its end
  std::shared_ptr<const RegistryFile> file;
};

/// Reads the file chosen with SetUserRegistry; `file` is null when that fails. Throws
/// std::bad_alloc.
UserRegistry ReadUserRegistry();

/// Reads a value as text; empty when it does not exist. Throws std::bad_alloc.
std::u16string ReadText(const RegistryFile& file, const char16_t* key, const char16_t* name);

}  // namespace vosmere
