#include "vosmere/text/read_file.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>

#include "vosmere/platform/internal/file.h"
#include "vosmere/text/chunk_buffer.h"
#include "vosmere/text/toolbox.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere {

CReadFile::CReadFile() = default;

CReadFile::~CReadFile() = default;

bool CReadFile::OpenFile(const WChar* path) {
  file_.reset(path ? new (std::nothrow) File : nullptr);
  if (file_ && !file_->Open(path)) file_.reset();
  fileName_.AssignOrNull(path);
  return file_ != nullptr;
}

void CReadFile::CloseFile() {
  file_.reset();
}

ULONG CReadFile::GetFileSize() const {
  std::uint64_t size = 0;
  const bool known = file_ && file_->Size(&size);
  return known ? static_cast<ULONG>(size) : std::numeric_limits<ULONG>::max();
}

int CReadFile::ReadToBuffer(char* bytes, int count) {
  std::size_t got = 0;
  if (file_ && count > 0) file_->ReadFully(bytes, static_cast<std::size_t>(count), &got);
  return static_cast<int>(got);
}

int CReadFile::ReadToBuffer(WChar* units, int count) {
  std::size_t got = 0;
  if (file_ && count > 0)
    file_->ReadFully(units, static_cast<std::size_t>(count) * sizeof(WChar), &got);
  return static_cast<int>(got / sizeof(WChar));
}

bool CReadFile::ReadToBuffer(char** bytes, int* count) {
  *count = 0;
  constexpr std::uint64_t kMost = std::numeric_limits<int>::max();
  std::uint64_t size = 0;
  if (!file_ || !file_->Size(&size) || size == 0 || size > kMost) return false;
  std::unique_ptr<char[]> block(new (std::nothrow) char[size]);
  std::size_t got = 0;
  if (!block || !file_->ReadFully(block.get(), size, &got) || got == 0) return false;
  *bytes = block.release();
  *count = static_cast<int>(got);
  return true;
}

int CReadFile::ReadAllToBuffer(BSTR* text) try {
  if (!file_) return 0;
  CChunkBuffer buffer;
  char piece[16 * 1024];
  for (std::size_t got = 0; file_->Read(piece, sizeof piece, &got) && got > 0;)
    if (!buffer.Append(piece, static_cast<int>(got))) return 0;
  Chunk* head = nullptr;
  const int total = buffer.Get(&head);
  if (total == 0) return 0;
  const std::unique_ptr<char[]> bytes = buffer.Joined();
  buffer.Clear();
  return bytes && CUnicodeTool::UTF8GetBSTR(text, bytes.get(), total + 1) ? total : 0;
} catch (const std::bad_alloc&) {
  return 0;
}

void CReadFile::Delete(char* bytes) {
  CBaseTool::Delete(bytes);
}

}  // namespace vosmere
