// File paths, and replacing a file by a new one.
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
#include "vosmere/storage/safe_save.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere {

/// The path of a file, made from any kind of text, for the library and for std::filesystem.
class FilePath {
 public:
  /// From a text of the library. A file with a null path cannot be opened.
  FilePath(const WChar* path) : wide_(SysAllocString(path)) {
    char name[kMostBytes];
    if (path && NameFromPath(path, name, sizeof name)) SetNative(name);
  }
  template <class Path>
  requires std::same_as<Path, std::filesystem::path> FilePath(const Path& path) : native_(path) {
    const std::u8string name = path.u8string();
    SetWide(reinterpret_cast<const char*>(name.c_str()));
  }
  /// A narrow text is in the system's encoding of file names, which is taken as UTF-8 on Windows.
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
  /// In UTF-8, for messages.
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

}  // namespace detail

/// The content of a file now, for SaveOptions::expected. If it is taken before loading, a save
/// refuses to replace what another program has saved since.
inline Result<FileMark> MarkOf(const FilePath& path) {
  FileMark mark;
  DocumentError error;
  if (!ReadFileMark(path.get(), &mark, &error)) return Error(path.name(), error);
  return mark;
}

/// A temporary file, for example for a document on its way to another program. It is removed at the
/// end.
class ReplacingFile {
 public:
  /// Chooses a random name in `folder` that cannot be guessed, so that nobody can have placed a
  /// link there. Creates nothing yet.
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

  /// Creates the empty file and sets its permissions before anything is written to it.
  std::error_code Create(std::optional<std::filesystem::perms> permissions = {}) const {
    std::error_code code;
    if (!std::ofstream(path_)) return {errno, std::generic_category()};
    if (permissions) std::filesystem::permissions(path_, *permissions, code);
    return code;
  }

 private:
  std::filesystem::path path_;
};

/// Calls `write` with the path of a new temporary file, and then replaces `path` by a copy of it
/// (SafeCopy). If either fails, `path` is unchanged. Links are followed, and permissions are kept.
/// A device or a pipe is written to directly. `write` returns an error or nullopt, and so does this
/// function.
template <class Write>
std::optional<Error> ReplaceFile(const FilePath& path, Write write) {
  namespace fs = std::filesystem;
  std::error_code code;
  if (fs::is_other(path.native(), code)) return write(path.native());
  // Checked first, because `write` may do something that cannot be undone, such as an upload.
  DocumentError error;
  if (!CanSaveTo(path.get(), &error)) return Error(path.name(), error);
  const ReplacingFile scratch(fs::temp_directory_path(code));
  code = scratch.Create(fs::perms::owner_read | fs::perms::owner_write);
  if (code) return detail::FileError(path, "cannot be written", code.value());
  if (std::optional<Error> failure = write(scratch.path())) return failure;
  if (SafeCopy(FilePath(scratch.path()).get(), path.get(), nullptr, nullptr, &error)) return {};
  return Error(path.name(), error);
}

}  // namespace vosmere
