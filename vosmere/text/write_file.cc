#include "vosmere/text/write_file.h"

#include <cstddef>
#include <new>

#include "vosmere/platform/internal/file.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere {
namespace {

constexpr int kMostStreamBytes = 200'000'000;

/// The file that `open` has opened; null when it has not.
template <class Open>
std::unique_ptr<File> Opened(Open open) {
  std::unique_ptr<File> file(new (std::nothrow) File);
  if (file && !open(*file)) file.reset();
  return file;
}

}  // namespace

CWriteFile::CWriteFile() = default;

CWriteFile::~CWriteFile() = default;

bool CWriteFile::OpenFile(const WChar* path) {
  CloseFile();
  file_ = Opened([path](File& file) { return path && file.Create(path); });
  return file_ != nullptr;
}

bool CWriteFile::OpenFileAppend(const WChar* path) {
  CloseFile();
  file_ = Opened([path](File& file) { return path && file.OpenOrCreate(path); });
  return file_ != nullptr;
}

void CWriteFile::CloseFile() {
  file_.reset();
}

bool CWriteFile::WriteData(const WChar* text) {
  if (!text || !*text) return false;
  char* bytes = nullptr;
  int length = 0;
  if (!CUnicodeTool::TCHARGetUTF8(text, &bytes, &length)) return false;
  const bool written = Write(bytes, length);
  CUnicodeTool::DeleteBuffer(bytes);
  return written;
}

bool CWriteFile::WriteStreamData(const void* bytes, int count) {
  return count >= 0 && count <= kMostStreamBytes && Write(bytes, count);
}

bool CWriteFile::Write(const void* bytes, int count) {
  const FilePiece piece = {bytes, static_cast<std::size_t>(count)};
  return file_ && file_->Write(&piece, 1);
}

}  // namespace vosmere
