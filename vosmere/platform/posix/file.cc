// File and FileMapping with POSIX descriptors and mmap.
#include "vosmere/platform/internal/file.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "vosmere/platform/posix/path.h"

namespace vosmere {
namespace {

template <class Call>
auto UntilNotInterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// Opens a file for non-blocking use; -1 on failure. Without O_NONBLOCK, opening a pipe would block
/// until its other end is opened; without O_NOCTTY, a terminal could become the controlling one.
int OpenPath(const WChar* path, int flags) {
  char name[PATH_MAX];
  if (!NativePath(path, name)) return -1;
  return UntilNotInterrupted(
      [&] { return open(name, flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666); });
}

int Descriptor(std::intptr_t handle) {
  return static_cast<int>(handle);
}

}  // namespace

bool File::Open(const WChar* path, Waiting waiting) {
  Close();
  handle_ = OpenPath(path, O_RDONLY);
  return Admit(waiting);
}

bool File::Create(const WChar* path, Waiting waiting) {
  Close();
  handle_ = OpenPath(path, O_WRONLY | O_CREAT | O_TRUNC);
  return Admit(waiting);
}

bool File::OpenOrCreate(const WChar* path, Waiting waiting) {
  Close();
  handle_ = OpenPath(path, O_WRONLY | O_CREAT);
  return Admit(waiting);
}

bool File::Admit(Waiting waiting) {
  if (!IsOpen()) return Fail();
  const auto refuse = [this](int error) {
    Close();
    errno = error;
    return Fail();
  };
  struct stat status;
  if (fstat(Descriptor(handle_), &status) != 0) return refuse(errno);
  if (S_ISDIR(status.st_mode)) return refuse(EISDIR);
  if (waiting == Waiting::kNever) return !S_ISFIFO(status.st_mode) || refuse(ENXIO);
  // Back to blocking mode, since the caller accepts waiting.
  return fcntl(Descriptor(handle_), F_SETFL, 0) == 0 || refuse(errno);
}

bool File::Read(void* bytes, std::size_t capacity, std::size_t* got) {
  const ssize_t count =
      UntilNotInterrupted([&] { return read(Descriptor(handle_), bytes, capacity); });
  if (count < 0) return Fail();
  *got = static_cast<std::size_t>(count);
  return true;
}

bool File::Write(const FilePiece* pieces, std::size_t count) {
  std::size_t done = 0;  // bytes of the first piece that have been written
  while (count) {
    iovec batch[IOV_MAX];
    const int size = static_cast<int>(std::min<std::size_t>(count, IOV_MAX));
    for (int i = 0; i < size; ++i) batch[i] = {const_cast<void*>(pieces[i].data), pieces[i].size};
    batch[0] = {static_cast<char*>(batch[0].iov_base) + done, batch[0].iov_len - done};

    const ssize_t written =
        UntilNotInterrupted([&] { return writev(Descriptor(handle_), batch, size); });
    if (written < 0) return Fail();
    if (written == 0 && batch[0].iov_len > 0) {  // retrying could go on for ever
      errno = EIO;
      return Fail();
    }
    for (done += written; count && done >= pieces->size; ++pieces, --count) done -= pieces->size;
  }
  return true;
}

bool File::Size(std::uint64_t* size) {
  struct stat status;
  if (fstat(Descriptor(handle_), &status) != 0) return Fail();
  *size = static_cast<std::uint64_t>(status.st_size);
  return true;
}

// Never tried again: the descriptor is released even when closing fails or is interrupted, and
// another thread may already use its number.
bool File::Close() {
  return !IsOpen() || close(Descriptor(std::exchange(handle_, kNone))) == 0 || Fail();
}

bool File::Fail() {
  error_ = static_cast<ULONG>(errno);
  return false;
}

bool FileMapping::Create(const File& file) {
  struct stat status;
  if (fstat(Descriptor(file.handle_), &status) != 0) return Fail();
  size_ = static_cast<std::uint64_t>(status.st_size);
  // Pipes and devices have no fixed size, and on a 32-bit system a large file does not fit the
  // address space.
  errno = S_ISREG(status.st_mode) ? EFBIG : ENODEV;
  if (!S_ISREG(status.st_mode) || size_ > SIZE_MAX) return Fail();
  // mmap refuses an empty mapping.
  void* const view = size_
                         ? mmap(nullptr, size_, PROT_READ, MAP_SHARED, Descriptor(file.handle_), 0)
                         : const_cast<char*>("");
  if (view == MAP_FAILED) return Fail();
  view_ = view;
  return true;
}

bool FileMapping::View() {
  return view_ != nullptr;
}

void FileMapping::Forget(std::size_t position, std::size_t size) {
  // madvise requires the start of a page.
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t begin = position - position % page;
  madvise(static_cast<char*>(const_cast<void*>(view_)) + begin, position + size - begin,
          MADV_DONTNEED);
}

void FileMapping::Close() {
  if (view_ && size_ > 0) munmap(const_cast<void*>(view_), size_);
  view_ = nullptr;
}

bool FileMapping::Fail() {
  error_ = static_cast<ULONG>(errno);
  return false;
}

// Lets the kernel copy: where the memory is gone, it returns an error instead of raising SIGBUS.
bool CopyUnlessGone(void* to, const void* from, std::size_t size) {
  const iovec target = {to, size}, source = {const_cast<void*>(from), size};
  const ssize_t copied = process_vm_readv(getpid(), &target, 1, &source, 1, 0);
  if (copied < 0 && errno != EFAULT) {  // the call is blocked, for example by a sandbox
    std::memcpy(to, from, size);
    return true;
  }
  return copied == static_cast<ssize_t>(size);
}

/// Numbers without a counterpart become ERROR_GEN_FAILURE.
ULONG WindowsError(ULONG error) {
  constexpr struct {
    int number;
    ULONG windows;
  } kNumbers[] = {
      {0, 0},        {ENOENT, 2},  {ENOTDIR, 3},        {EMFILE, 4},  {ENFILE, 4},   {EACCES, 5},
      {EPERM, 5},    {EISDIR, 5},  {EBADF, 6},          {ENOMEM, 8},  {ENODEV, 20},  {EIO, 30},
      {ETXTBSY, 32}, {EINVAL, 87}, {ENAMETOOLONG, 206}, {EFBIG, 223}, {ELOOP, 1921},
  };
  constexpr ULONG kGeneralFailure = 31;
  for (const auto& known : kNumbers)
    if (static_cast<ULONG>(known.number) == error) return known.windows;
  return kGeneralFailure;
}

}  // namespace vosmere
