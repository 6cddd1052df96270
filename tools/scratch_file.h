// Files for the time being.
#pragma once

#include <filesystem>

namespace vosmere::tool {

inline constexpr std::filesystem::perms kForTheUserAlone =
    std::filesystem::perms::owner_read | std::filesystem::perms::owner_write;

/// A file that goes away unless it was moved. Its name cannot be guessed, so that nobody can have
/// put a link there.
class ScratchFile {
 public:
  /// Names it; the system's own folder for such files throws std::filesystem::filesystem_error
  /// where there is none.
  explicit ScratchFile(
      const std::filesystem::path& folder = std::filesystem::temp_directory_path());
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile();

  const std::filesystem::path& path() const { return path_; }

  /// Makes it, empty. Throws std::filesystem::filesystem_error.
  void Create() const;
  /// The same so that from the beginning nobody else may read what is written to it.
  void Create(std::filesystem::perms permissions) const;

 private:
  std::filesystem::path path_;
};

}  // namespace vosmere::tool
