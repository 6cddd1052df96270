// Writes output files, or standard output.
#include "tools/output.h"

#include <cerrno>
#include <fstream>
#include <iostream>

#include "tools/document.h"
#include "tools/terminal.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

// Writers need a path, and nothing may be printed if they fail; hence the temporary file.
std::optional<Error> WriteStandardOutput(const FileWriter& write) {
  std::error_code code;
  const ReplacingFile scratch(std::filesystem::temp_directory_path(code));
  if (!code) code = scratch.Create(kForTheUserAlone);
  if (code) return detail::FileError(scratch.path(), "cannot be written", code.value());
  if (std::optional<Error> error = write(scratch.path())) return error;
  MakeOutputBinary();
  std::ifstream file(scratch.path(), std::ios::binary);
  char piece[64 * 1024];
  while (file.read(piece, sizeof piece), file.gcount() > 0) std::cout.write(piece, file.gcount());
  return {};
}

}  // namespace

std::optional<Error> WriteFile(const FilePath& path, const std::string& bytes) {
  std::ofstream file(path.native(), std::ios::binary);
  file << bytes;
  file.close();
  if (!file) return detail::FileError(path, "cannot be written", errno);
  return {};
}

void WriteOutput(const std::string& file, const FileWriter& write) {
  const std::optional<Error> error =
      IsStandard(file) ? WriteStandardOutput(write) : ReplaceFile(PathOf(file), write);
  if (error) throw FailureOf(OutputName(file), *error);
}

}  // namespace vosmere::tool
