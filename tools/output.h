// Writing output files, or standard output.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "tools/failure.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

/// For temporary files: documents may be private.
inline constexpr std::filesystem::perms kForTheUserAlone =
    std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;

/// Writes a file at the path. Returns an error or nullopt, or throws.
using FileWriter = std::function<std::optional<Error>(const FilePath& path)>;

/// Lets `write` write a temporary file, which then replaces `file` (ReplaceFile) or, if `file` is
/// "-", is copied to standard output. If `write` fails, there is no output. Throws Failure.
void WriteOutput(const std::string& file, const FileWriter& write);

/// Creates or overwrites a file. Returns an error or nullopt.
std::optional<Error> WriteFile(const FilePath& path, const std::string& bytes);

}  // namespace vosmere::tool
