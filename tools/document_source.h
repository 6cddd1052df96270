// Where a document's bytes come from.
#pragma once

#include <optional>
#include <string>

#include "tools/scratch_file.h"
#include "vosmere/xml/read_xml.h"

namespace vosmere::tool {

/// Lets the reader load a file, or the standard input for "-". What may wait for its bytes, as a
/// pipe does, is read first, up to 256 MiB. Throws Failure when it does not come to a load.
bool LoadFrom(const std::string& file, CReadXML& reader);

/// A file for what takes a path; the standard input becomes one, which goes away with this.
class InputFile {
 public:
  /// Throws Failure.
  explicit InputFile(const std::string& file);

  const std::string& name() const { return name_; }

 private:
  std::string name_;
  std::optional<ScratchFile> copy_;
};

}  // namespace vosmere::tool
