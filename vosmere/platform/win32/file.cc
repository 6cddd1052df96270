// File and FileMapping with the handles of Windows.
#include "vosmere/platform/internal/file.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "vosmere/platform/win32/com.h"

namespace vosmere {
namespace {

constexpr std::size_t kBlock = 256 * 1024;    // the buffer of BlockWriter
constexpr std::size_t kMostAtOnce = 1 << 30;  // the system's count has 32 bits

HANDLE Native(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

std::intptr_t OpenHandle(const WChar* path, DWORD access, DWORD disposition) {
  return reinterpret_cast<std::intptr_t>(::CreateFileW(win32::Native(path), access, FILE_SHARE_READ,
                                                       nullptr, disposition, FILE_ATTRIBUTE_NORMAL,
                                                       nullptr));
}

bool WriteAll(HANDLE file, const char* bytes, std::size_t size) {
  while (size > 0) {
    DWORD written = 0;
    const auto part = static_cast<DWORD>(std::min(size, kMostAtOnce));
    if (!::WriteFile(file, bytes, part, &written, nullptr) || written == 0) return false;
    bytes += written;
    size -= written;
  }
  return true;
}

/// Joins small pieces into blocks, so that a document of many chunks takes few system calls.
class BlockWriter {
 public:
  explicit BlockWriter(HANDLE file) : file_(file), block_(new char[kBlock]) {}

  bool Add(const char* bytes, std::size_t size) {
    if (size > kBlock - used_ && !Flush()) return false;
    if (size >= kBlock) return WriteAll(file_, bytes, size);
    if (size > 0) std::memcpy(block_.get() + used_, bytes, size);
    used_ += size;
    return true;
  }
  bool Flush() { return WriteAll(file_, block_.get(), std::exchange(used_, 0)); }

 private:
  HANDLE file_;
  std::unique_ptr<char[]> block_;
  std::size_t used_ = 0;
};

bool WritePieces(HANDLE file, const FilePiece* pieces, std::size_t count) {
  const auto bytes = [](const FilePiece& piece) { return static_cast<const char*>(piece.data); };
  if (count == 1) return WriteAll(file, bytes(*pieces), pieces->size);
  BlockWriter writer(file);
  return std::all_of(pieces, pieces + count,
                     [&](const FilePiece& p) { return writer.Add(bytes(p), p.size); }) &&
         writer.Flush();
}

}  // namespace

bool File::Open(const WChar* path, Waiting waiting) {
  Close();
  handle_ = OpenHandle(path, GENERIC_READ, OPEN_EXISTING);
  return Admit(waiting);
}

bool File::Create(const WChar* path, Waiting waiting) {
  Close();
  handle_ = OpenHandle(path, GENERIC_WRITE, CREATE_ALWAYS);
  return Admit(waiting);
}

bool File::OpenOrCreate(const WChar* path, Waiting waiting) {
  Close();
  handle_ = OpenHandle(path, GENERIC_WRITE, OPEN_ALWAYS);
  return Admit(waiting);
}

bool File::Admit(Waiting waiting) {
  if (!IsOpen()) return Fail();
  // Pipes and devices open like files.
  if (waiting == Waiting::kAllowed || ::GetFileType(Native(handle_)) == FILE_TYPE_DISK) return true;
  Close();
  ::SetLastError(ERROR_BAD_FILE_TYPE);
  return Fail();
}

bool File::Read(void* bytes, std::size_t capacity, std::size_t* got) {
  DWORD read = 0;
  const auto part = static_cast<DWORD>(std::min(capacity, kMostAtOnce));
  if (!::ReadFile(Native(handle_), bytes, part, &read, nullptr)) return Fail();
  *got = read;
  return true;
}

bool File::Write(const FilePiece* pieces, std::size_t count) {
  try {
    return WritePieces(Native(handle_), pieces, count) || Fail();
  } catch (const std::bad_alloc&) {
    error_ = ERROR_NOT_ENOUGH_MEMORY;
    return false;
  }
}

bool File::Size(std::uint64_t* size) {
  LARGE_INTEGER length;
  if (!::GetFileSizeEx(Native(handle_), &length)) return Fail();
  *size = static_cast<std::uint64_t>(length.QuadPart);
  return true;
}

bool File::Close() {
  return !IsOpen() || ::CloseHandle(Native(std::exchange(handle_, kNone))) || Fail();
}

bool File::Fail() {
  error_ = ::GetLastError();
  return false;
}

// CreateFileMapping refuses an empty file.
bool FileMapping::Create(const File& file) {
  LARGE_INTEGER length;
  if (!::GetFileSizeEx(Native(file.handle_), &length)) return Fail();
  size_ = static_cast<std::uint64_t>(length.QuadPart);
  if (size_ == 0) return true;
  const HANDLE mapping =
      ::CreateFileMappingW(Native(file.handle_), nullptr, PAGE_READONLY, 0, 0, nullptr);
  if (mapping) handle_ = reinterpret_cast<std::intptr_t>(mapping);
  return mapping || Fail();
}

bool FileMapping::View() {
  view_ = size_ ? ::MapViewOfFile(Native(handle_), FILE_MAP_READ, 0, 0, 0) : "";
  return view_ || Fail();
}

// VirtualUnlock removes pages that are not locked from the working set.
void FileMapping::Forget(std::size_t position, std::size_t size) {
  ::VirtualUnlock(const_cast<char*>(data()) + position, size);
}

void FileMapping::Close() {
  if (view_ && size_ > 0) ::UnmapViewOfFile(view_);
  view_ = nullptr;
  if (handle_ != File::kNone) ::CloseHandle(Native(std::exchange(handle_, File::kNone)));
}

bool FileMapping::Fail() {
  error_ = ::GetLastError();
  return false;
}

// Windows does not let a mapped file be truncated.
bool CopyUnlessGone(void* to, const void* from, std::size_t size) {
  std::memcpy(to, from, size);
  return true;
}

ULONG WindowsError(ULONG error) {
  return error;
}

}  // namespace vosmere
