#include "tools/scratch_file.h"

#include <cerrno>
#include <fstream>

#include "tools/text.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere::tool {

ScratchFile::ScratchFile(const std::filesystem::path& folder) {
  const SystemString uuid(RNTool::CreateUUID());
  path_ = folder / (ToUtf8(uuid.get()) + ".tmp");
}

ScratchFile::~ScratchFile() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

void ScratchFile::Create() const {
  if (!std::ofstream(path_))
    throw std::filesystem::filesystem_error("", path_, {errno, std::generic_category()});
}

void ScratchFile::Create(std::filesystem::perms permissions) const {
  Create();
  std::filesystem::permissions(path_, permissions);
}

}  // namespace vosmere::tool
