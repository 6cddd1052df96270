// The file that stands for the current user's registry, and where it came from.
#pragma once

#include <memory>
#include <string>

#include "vosmere/platform/posix/registry_file.h"

namespace vosmere {

struct UserRegistry {
  enum Kind { kHive, kWinePrefix, kExported };

  Kind kind;
  std::u16string folder;  ///< that it lies in, with a separator at its end
  std::shared_ptr<const RegistryFile> file;
};

/// Reads the chosen file; its `file` is null when that fails. Throws std::bad_alloc.
UserRegistry ReadUserRegistry();

/// A value that is a text; empty for none. Throws std::bad_alloc.
std::u16string ReadText(const RegistryFile& file, const char16_t* key, const char16_t* name);

}  // namespace vosmere
