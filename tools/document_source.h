// Files for what takes a path.
#pragma once

#include <optional>
#include <string>

#include "vosmere/cpp.h"

namespace vosmere::tool {

/// The standard input becomes a file, which goes away with this.
class InputFile {
 public:
  /// Throws Failure.
  explicit InputFile(const std::string& file);

  const std::string& name() const { return name_; }

 private:
  std::string name_;
  std::optional<ReplacingFile> copy_;
};

}  // namespace vosmere::tool
