// Input files for functions that need a path.
#pragma once

#include <optional>
#include <string>

#include "vosmere/cpp.h"

namespace vosmere::tool {

/// An input file by its path. For "-", standard input is copied to a temporary file, which the
/// destructor removes.
class InputFile {
 public:
  /// Throws Failure.
  explicit InputFile(const std::string& file);

  /// The path of the file.
  const std::string& name() const { return name_; }

 private:
  std::string name_;
  std::optional<ReplacingFile> copy_;
};

}  // namespace vosmere::tool
