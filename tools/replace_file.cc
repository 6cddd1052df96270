#include "tools/replace_file.h"

#include <cerrno>
#include <fstream>
#include <system_error>

#include "tools/failure.h"
#include "tools/scratch_file.h"
#include "tools/text.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere::tool {
namespace {

namespace fs = std::filesystem;

/// Where the links end. Throws for what `rename` would replace although it cannot be written, or
/// should not be.
fs::path TargetOf(const std::string& file) {
  const auto refuse = [&](const std::string& why) {
    throw FileFailure(kTrouble, Printable(file), why);
  };
  const fs::path path = PathOf(file);
  if (fs::exists(path) && !fs::is_regular_file(path)) refuse("is not a plain file");
  fs::path target = fs::weakly_canonical(path);
  if (fs::is_symlink(fs::symlink_status(target))) refuse("is a link to nothing");
  if (fs::exists(target) && !std::ofstream(target, std::ios::app))
    refuse("cannot be written: " + std::generic_category().message(errno));
  return target;
}

}  // namespace

void ReplaceFile(const std::string& file, const FileWriter& write) try {
  const fs::path target = TargetOf(file);
  const ScratchFile scratch(target.parent_path());
  // Nobody reads the copy who may not read the original.
  fs::exists(target) ? scratch.Create(fs::status(target).permissions()) : scratch.Create();
  write(scratch.path());
  fs::rename(scratch.path(), target);
} catch (const fs::filesystem_error& error) {
  throw FileFailure(kTrouble, Printable(file),
                    "cannot be written: " + Printable(error.code().message()));
}

}  // namespace vosmere::tool
