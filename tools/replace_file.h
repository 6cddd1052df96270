// Putting a new file in the place of an old one, all of it or nothing.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace vosmere::tool {

/// Makes a file under the path, or throws.
using FileWriter = std::function<void(const std::filesystem::path& path)>;

/// Lets `write` make a new file beside `file`, then puts that in its place; links are followed, and
/// permissions stay. When `write` throws, the new file is removed and `file` is what it was. Throws
/// Failure.
void ReplaceFile(const std::string& file, const FileWriter& write);

}  // namespace vosmere::tool
