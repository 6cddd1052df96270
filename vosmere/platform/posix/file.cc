#include "vosmere/platform/file.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <utility>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/posix/utf8.h"

namespace vosmere {
namespace {

std::string NativePath(const WChar* path) {
  const WideView wide(path);
  std::string bytes(wide.size * utf8::kMaxBytesPerUnit, '\0');
  bytes.resize(utf8::Encode(wide.data, wide.size, bytes.data(), bytes.size()));
  std::replace(bytes.begin(), bytes.end(), '\\', '/');
  return bytes;
}

template <class Call>
auto Retried(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

std::intptr_t OpenDescriptor(const WChar* path, int flags) {
  const std::string name = NativePath(path);
  return Retried([&] { return ::open(name.c_str(), flags | O_CLOEXEC, 0666); });
}

}  // namespace

File::File(File&& other) noexcept
    : handle_(std::exchange(other.handle_, kNone)), error_(other.error_) {}

File& File::operator=(File&& other) noexcept {
  std::swap(handle_, other.handle_);
  std::swap(error_, other.error_);
  return *this;
}

bool File::Open(const WChar* path) {
  Close();
  handle_ = OpenDescriptor(path, O_RDONLY);
  if (!IsOpen()) return Fail();
  struct stat status;
  if (::fstat(static_cast<int>(handle_), &status) == 0 && !S_ISDIR(status.st_mode)) return true;
  Close();
  errno = EISDIR;
  return Fail();
}

bool File::Create(const WChar* path) {
  Close();
  handle_ = OpenDescriptor(path, O_WRONLY | O_CREAT | O_TRUNC);
  return IsOpen() || Fail();
}

bool File::Read(void* bytes, std::size_t capacity, std::size_t* got) {
  const ssize_t result =
      Retried([&] { return ::read(static_cast<int>(handle_), bytes, capacity); });
  if (result < 0) return Fail();
  *got = static_cast<std::size_t>(result);
  return true;
}

bool File::Write(const FilePiece* pieces, std::size_t count) {
  iovec vectors[IOV_MAX];
  std::size_t done = 0;  // of the first piece
  while (count > 0) {
    const int batch = static_cast<int>(std::min<std::size_t>(count, IOV_MAX));
    for (int i = 0; i < batch; ++i)
      vectors[i] = {const_cast<void*>(pieces[i].data), pieces[i].size};
    vectors[0] = {static_cast<char*>(vectors[0].iov_base) + done, vectors[0].iov_len - done};
    const ssize_t result =
        Retried([&] { return ::writev(static_cast<int>(handle_), vectors, batch); });
    if (result < 0) return Fail();
    for (done += static_cast<std::size_t>(result); count > 0 && done >= pieces->size; --count)
      done -= pieces++->size;
  }
  return true;
}

bool File::Size(std::uint64_t* size) {
  struct stat status;
  if (::fstat(static_cast<int>(handle_), &status) != 0) return Fail();
  *size = static_cast<std::uint64_t>(status.st_size);
  return true;
}

void File::Close() {
  if (IsOpen()) ::close(static_cast<int>(std::exchange(handle_, kNone)));
}

bool File::Fail() {
  error_ = static_cast<ULONG>(errno);
  return false;
}

}  // namespace vosmere
