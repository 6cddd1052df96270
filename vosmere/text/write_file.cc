// Writes files through the platform's File, and keeps its last error number.
#include "vosmere/text/write_file.h"

#include <cstddef>
#include <new>
#include <utility>

#include "vosmere/platform/internal/file.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere {
namespace {

constexpr int kMostStreamBytes = 200'000'000;

}  // namespace

CWriteFile::CWriteFile() = default;

CWriteFile::~CWriteFile() = default;

bool CWriteFile::OpenFile(const WChar* path) {
  return OpenWith([path](File& file) { return path && file.Create(path); });
}

bool CWriteFile::OpenFileAppend(const WChar* path) {
  return OpenWith([path](File& file) { return path && file.OpenOrCreate(path); });
}

template <class Open>
bool CWriteFile::OpenWith(Open open) {
  file_.Assign(new (std::nothrow) File);  // this also closes the previous file
  const bool opened = file_ && open(*file_);
  systemError_ = file_ ? file_->error() : 0;
  if (!opened) file_.Assign(nullptr);
  return opened;
}

bool CWriteFile::CloseFile() {
  const OwnedPointer<File> file = std::move(file_);
  return !file || file->Close() || Fail(*file);
}

bool CWriteFile::WriteData(const WChar* text) {
  if (!text || !*text) return false;
  char* bytes = nullptr;
  int length = 0;
  if (!CUnicodeTool::TCHARGetUTF8(text, &bytes, &length)) return false;
  const bool written = Write(bytes, static_cast<std::size_t>(length));
  CUnicodeTool::DeleteBuffer(bytes);
  return written;
}

bool CWriteFile::WriteStreamData(const void* bytes, int count) {
  return count >= 0 && count <= kMostStreamBytes && Write(bytes, static_cast<std::size_t>(count));
}

bool CWriteFile::Write(const void* bytes, std::size_t count) {
  const FilePiece piece = {bytes, count};
  return file_ && (file_->Write(&piece, 1) || Fail(*file_));
}

bool CWriteFile::Fail(const File& file) {
  systemError_ = file.error();
  return false;
}

}  // namespace vosmere
