// The sources of a document's bytes: files, memory, UTF-16 text.
#include "vosmere/platform/posix/xml/source.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/internal/xml_document.h"

namespace vosmere::posix {
namespace {

[[noreturn]] void ThrowFileFailure(DocumentFault fault, ULONG systemError, const char* reason) {
  DocumentFailure failure;
  failure.error.fault = fault;
  failure.error.systemError = systemError;
  std::snprintf(failure.error.reason, sizeof failure.error.reason, "%s: %s", reason,
                std::strerror(static_cast<int>(systemError)));
  throw failure;
}

constexpr std::size_t kLeastRead = std::size_t{4} * 1024;
constexpr std::size_t kMostAhead = std::size_t{64} * 1024 * 1024;

/// Whether a document in UTF-8 may begin with this byte: with markup, or with the byte-order mark.
bool BeginsPlainly(char byte) {
  return byte == '<' || byte == '\xEF';
}

}  // namespace

FileSource::FileSource(const WChar* path) {
  if (!file_.Open(path, Waiting::kAllowed))
    ThrowFileFailure(DocumentFault::kCannotOpen, file_.error(), "the file cannot be opened");
}

int FileSource::Read(char* bytes, int capacity) {
  std::size_t got = 0;
  if (!file_.Read(bytes, static_cast<std::size_t>(capacity), &got))
    ThrowFileFailure(DocumentFault::kCannotRead, file_.error(), "the file cannot be read");
  return static_cast<int>(got);
}

std::size_t FileSource::Size() {
  std::uint64_t size = 0;
  return file_.Size(&size) ? static_cast<std::size_t>(size) : 0;
}

int MemorySource::Read(char* bytes, int capacity) {
  const std::size_t part = left_.copy(bytes, static_cast<std::size_t>(capacity));
  left_.remove_prefix(part);
  return static_cast<int>(part);
}

int TextSource::Read(char* bytes, int capacity) {
  if (text_.empty()) return 0;
  const WideView piece = text_.First(capacity / 3);  // at most 3 bytes for each code unit
  std::size_t whole = WellFormedLength(piece);
  if (whole == 0) return -1;
  text_ = text_.From(whole);
  return WideToBytes(kCodePageUtf8, piece.data, static_cast<int>(whole), bytes, capacity);
}

ReadAhead::ReadAhead(XmlSource& source) : source_(source) {
  // With room beyond the estimated size, the end is found without growing.
  Reserve(std::min(source.Size(), kMostAhead) + kLeastRead);
  while (size_ < kMostAhead && (size_ == 0 || BeginsPlainly(*bytes_))) {
    if (capacity_ - size_ < kLeastRead) Reserve(2 * capacity_);
    const int got = source_.Read(bytes_.get() + size_, static_cast<int>(capacity_ - size_));
    if (got <= 0) {
      ended_ = got == 0;
      return;
    }
    size_ += static_cast<std::size_t>(got);
  }
}

std::optional<std::string_view> ReadAhead::Whole() const {
  if (!ended_) return {};
  return std::string_view(bytes_.get(), size_);
}

int ReadAhead::Read(char* bytes, int capacity) {
  if (at_ == size_ && !ended_) {
    const int got = source_.Read(bytes_.get(), static_cast<int>(capacity_));
    if (got < 0) return got;
    ended_ = got == 0;
    size_ = static_cast<std::size_t>(got);
    at_ = 0;
  }
  const std::size_t part = std::min(static_cast<std::size_t>(capacity), size_ - at_);
  std::memcpy(bytes, bytes_.get() + at_, part);
  at_ += part;
  return static_cast<int>(part);
}

void ReadAhead::Reserve(std::size_t capacity) {
  void* const longer = std::realloc(bytes_.get(), capacity);
  if (!longer) throw std::bad_alloc();
  static_cast<void>(bytes_.release());
  bytes_.reset(static_cast<char*>(longer));
  capacity_ = capacity;
}

}  // namespace vosmere::posix
