// Reads files through the platform's File, and keeps whether a read was incomplete.
#include "vosmere/text/read_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>

#include "vosmere/platform/internal/file.h"
#include "vosmere/text/chunk_buffer.h"
#include "vosmere/text/toolbox.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere {

CReadFile::CReadFile() = default;

CReadFile::~CReadFile() = default;

bool CReadFile::OpenFile(const WChar* path) {
  file_.Assign(path ? new (std::nothrow) File : nullptr);
  if (file_ && !file_->Open(path)) file_.Assign(nullptr);
  fileName_.AssignOrNull(path);
  return file_.get() != nullptr;
}

void CReadFile::CloseFile() {
  file_.Assign(nullptr);
}

ULONG CReadFile::GetFileSize() const {
  std::uint64_t size = 0;
  const bool known = file_ && file_->Size(&size);
  return known ? static_cast<ULONG>(size) : std::numeric_limits<ULONG>::max();
}

int CReadFile::ReadToBuffer(char* bytes, int count) {
  return static_cast<int>(Read(bytes, static_cast<std::size_t>(std::max(count, 0))));
}

int CReadFile::ReadToBuffer(WChar* units, int count) {
  const std::size_t size = static_cast<std::size_t>(std::max(count, 0)) * sizeof(WChar);
  return static_cast<int>(Read(units, size) / sizeof(WChar));
}

std::size_t CReadFile::Read(void* bytes, std::size_t size) {
  std::size_t got = 0;
  readFailed_ = !file_ || !file_->ReadFully(bytes, size, &got);
  return got;
}

bool CReadFile::ReadToBuffer(char** bytes, int* count) {
  *count = 0;
  readFailed_ = true;
  constexpr std::uint64_t kMost = std::numeric_limits<int>::max();
  std::uint64_t size = 0;
  if (!file_ || !file_->Size(&size) || size > kMost) return false;
  std::unique_ptr<char[]> block(new (std::nothrow) char[size]);
  if (!block) return false;
  const std::size_t got = Read(block.get(), size);
  if (readFailed_ || got == 0) return false;
  *bytes = block.release();
  *count = static_cast<int>(got);
  return true;
}

int CReadFile::ReadAllToBuffer(BSTR* text) try {
  CChunkBuffer buffer;
  char piece[16 * 1024];
  do {
    const std::size_t got = Read(piece, sizeof piece);
    if (got == 0) break;
    // Refused at 100 MiB; reported in the same way as exhausted memory.
    if (!buffer.Append(piece, static_cast<int>(got))) throw std::bad_alloc();
  } while (!readFailed_);
  Chunk* head = nullptr;
  const int total = buffer.Get(&head);
  if (total == 0) return 0;
  const OwnedPointer<char, WithArrayDelete> bytes = buffer.Joined();
  // Freed now, because the conversion needs memory for the same text once more.
  buffer.Clear();
  // Converts the null after the last byte as well, so that the string's length counts it.
  if (!bytes || !CUnicodeTool::UTF8GetBSTR(text, bytes.get(), total + 1)) throw std::bad_alloc();
  return total;
} catch (const std::bad_alloc&) {
  readFailed_ = true;
  return 0;
}

void CReadFile::Delete(char* bytes) {
  CBaseTool::Delete(bytes);
}

}  // namespace vosmere
