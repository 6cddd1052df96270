#include "tools/replace_file.h"

#include <fstream>
#include <system_error>

#include "tools/failure.h"
#include "tools/text.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere::tool {
namespace {

namespace fs = std::filesystem;

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

/// Where the links end. Throws for what `rename` would replace although it cannot be written, or
/// should not be.
fs::path TargetOf(const std::string& file) {
  const auto refuse = [&](const char* why) {
    throw Failure{kTrouble, Printable(file) + ": error: " + why};
  };
  const fs::path path = PathOf(file);
  if (fs::exists(path) && !fs::is_regular_file(path)) refuse("is not a plain file");
  fs::path target = fs::weakly_canonical(path);
  if (fs::is_symlink(fs::symlink_status(target))) refuse("is a link to nothing");
  if (fs::exists(target) && !std::ofstream(target, std::ios::app)) refuse("cannot be written");
  return target;
}

}  // namespace

void ReplaceFile(const std::string& file, const std::function<void(const WChar* path)>& write) try {
  const fs::path target = TargetOf(file);
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
