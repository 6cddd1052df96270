#include "tools/replace_file.h"

#include <algorithm>
#include <fstream>
#include <system_error>

#include "tools/failure.h"
#include "tools/text.h"
#include "vosmere/nodes/tree_tool.h"

namespace vosmere::tool {
namespace {

namespace fs = std::filesystem;

/// As the library reads paths: a backslash separates everywhere.
fs::path PathOf(std::string utf8) {
  std::replace(utf8.begin(), utf8.end(), '\\', '/');
  return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

SystemString WidePath(const fs::path& path) {
  return SystemString(SysAllocString(Wide(path.u16string())));
}

/// A file that goes away unless it was moved.
class ScratchFile {
 public:
  /// The name cannot be guessed, so that nobody can have put a link there.
  explicit ScratchFile(const fs::path& beside) {
    const SystemString uuid(RNTool::CreateUUID());
    path_ = beside.parent_path() / (ToUtf8(uuid.get()) + ".tmp");
  }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;
  ~ScratchFile() {
    std::error_code ignored;
    fs::remove(path_, ignored);
  }

  const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

/// What `rename` would replace although it cannot be written, or should not be.
void CheckReplaceable(const fs::path& target, const std::string& file) {
  if (fs::is_symlink(fs::symlink_status(target)))
    throw Failure{kTrouble, Printable(file) + ": error: is a link to nothing"};
  if (!fs::exists(target)) return;
  if (!fs::is_regular_file(target))
    throw Failure{kTrouble, Printable(file) + ": error: is not a plain file"};
  if (!std::ofstream(target, std::ios::app))
    throw Failure{kTrouble, Printable(file) + ": error: cannot be written"};
}

}  // namespace

void ReplaceFile(const std::string& file, const std::function<void(const WChar* path)>& write) try {
  const fs::path target = fs::weakly_canonical(PathOf(file));
  CheckReplaceable(target, file);
  const ScratchFile scratch(target);
  if (fs::exists(target)) {  // nobody reads the copy who may not read the original
    std::ofstream(scratch.path()).close();
    fs::permissions(scratch.path(), fs::status(target).permissions());
  }
  write(WidePath(scratch.path()).get());
  fs::rename(scratch.path(), target);
} catch (const fs::filesystem_error& error) {
  throw Failure{kTrouble, Printable(file) + ": error: " + Printable(error.code().message())};
}

}  // namespace vosmere::tool
