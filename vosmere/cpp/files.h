// Files by their paths, and putting a new one in the place of an old one.
//
//   Load<Tree>(argv[1])                                 // bytes of the system, UTF-8 on Windows
//   Load<Tree>(std::filesystem::path("a") / "b.opml")
//   Load<Tree>(u"b.opml")
#pragma once

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "vosmere/cpp/own.h"
#include "vosmere/cpp/result.h"
#include "vosmere/cpp/text.h"
#include "vosmere/platform/path.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere {

/// A file's path, from whatever says it, for the library and for std::filesystem.
class FilePath {
 public:
  /// One of the library's own; null is a file that does not open.
  FilePath(const WChar* path) : wide_(SysAllocString(path)) {
    char name[kMostBytes];
    if (path && NameFromPath(path, name, sizeof name)) SetNative(name);
  }
  template <class Path>
  requires std::same_as<Path, std::filesystem::path> FilePath(const Path& path) : native_(path) {
    const std::u8string name = path.u8string();
    SetWide(reinterpret_cast<const char*>(name.c_str()));
  }
  /// A narrow text is the system's own bytes, which are UTF-8 on Windows.
  template <AnyText Text>
  FilePath(const Text& path) {
    if (detail::IsNull(path)) return;
    const std::string name = [&] {
      if constexpr (Utf8Text<Text>)
        return std::string(detail::ViewUtf8(path));
      else
        return ToUtf8(path);
    }();
    if (name.find('\0') != name.npos) return;  // no system has such a file
    SetNative(name);
    SetWide(name.c_str());
  }

  const WChar* get() const { return wide_.get(); }
  const std::filesystem::path& native() const { return native_; }
  /// In UTF-8, for people.
  std::string name() const { return ToUtf8(wide_.get()); }

 private:
  static constexpr std::size_t kMostBytes = 4096;

  void SetNative(const std::string& name) { native_ = std::u8string(name.begin(), name.end()); }
  void SetWide(const char* name) {
    wide_.reset(PathFromName(name));
    if (!wide_) detail::ThrowNoMemory();
  }

  SystemString wide_;
  std::filesystem::path native_;
};

namespace detail {

inline Error FileError(const FilePath& path, const std::string& why, int code = 0) {
  Error error(path.name(), code ? why + ": " + std::system_category().message(code) : why);
  error.systemError = static_cast<unsigned>(code);
  error.fault = DocumentFault::kCannotOpen;
  return error;
}

/// Where links end, for what is to be replaced.
inline Result<std::filesystem::path> TargetOf(const FilePath& path) {
  namespace fs = std::filesystem;
  std::error_code code;
  if (path.native().empty()) return FileError(path, "no file was named");
  if (fs::is_directory(path.native(), code)) return FileError(path, "is a folder");
  const fs::path target = fs::weakly_canonical(path.native(), code);
  if (code) return FileError(path, "cannot be written", code.value());
  if (fs::is_symlink(fs::symlink_status(target, code)))
    return FileError(path, "is a link to nothing");
  // A new file could be put there, but this one is not to be changed.
  if (fs::exists(target, code) && !std::ofstream(target, std::ios::app))
    return FileError(path, "cannot be written", errno);
  return target;
}

}  // namespace detail

/// A file beside another, to be written and then put in its place; it goes away unless it was.
class ReplacingFile {
 public:
  /// A name that nobody can guess, so that nobody can have put a link there.
  explicit ReplacingFile(const std::filesystem::path& folder) {
    const SystemString uuid(RNTool::CreateUUID());
    if (!uuid) detail::ThrowNoMemory();
    path_ = folder / (ToUtf8(uuid.get()) + ".tmp");
  }
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;
  ~ReplacingFile() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }

  /// Makes it, empty, to be read and written by whom the permissions name, from the beginning.
  std::error_code Create(std::optional<std::filesystem::perms> permissions = {}) const {
    std::error_code code;
    if (!std::ofstream(path_)) return {errno, std::generic_category()};
    if (permissions) std::filesystem::permissions(path_, *permissions, code);
    return code;
  }
  /// Puts it in the place of `target`.
  std::error_code MoveTo(const std::filesystem::path& target) {
    std::error_code code;
    std::filesystem::rename(path_, target, code);
    if (!code) path_.clear();
    return code;
  }

 private:
  std::filesystem::path path_;
};

/// Lets `write` make a new file under the path that it is given, then puts that in the place of
/// `path`: all of it or, when either fails, nothing. Links are followed, and permissions stay.
/// What is no plain file, as a device or a pipe, is written to as it is. `write` returns why it
/// failed, or nothing, and so does this.
template <class Write>
std::optional<Error> ReplaceFile(const FilePath& path, Write write) {
  namespace fs = std::filesystem;
  std::error_code code;
  if (fs::is_other(path.native(), code)) return write(path.native());
  const Result<fs::path> target = detail::TargetOf(path);
  if (!target) return target.error();
  ReplacingFile scratch(target->parent_path());
  const fs::file_status before = fs::status(*target, code);
  code = fs::exists(before) ? scratch.Create(before.permissions()) : scratch.Create();
  if (code) return detail::FileError(path, "cannot be written", code.value());
  if (std::optional<Error> error = write(scratch.path())) return error;
  code = scratch.MoveTo(*target);
  if (code) return detail::FileError(path, "cannot be written", code.value());
  return {};
}

}  // namespace vosmere
