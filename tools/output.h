// Where what the tool writes goes.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "tools/failure.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

inline constexpr std::filesystem::perms kForTheUserAlone =
    std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;

/// Makes a file under the path, says why it could not, or throws.
using FileWriter = std::function<std::optional<Error>(const FilePath& path)>;

/// Lets `write` make a file, which then replaces the file of that name (ReplaceFile) or, for "-",
/// goes to the standard output; when `write` fails, nothing does. Throws Failure.
void WriteOutput(const std::string& file, const FileWriter& write);

/// Writes all of a file, or says why not.
std::optional<Error> WriteFile(const FilePath& path, const std::string& bytes);

}  // namespace vosmere::tool
