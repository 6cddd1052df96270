#include "vosmere/platform/posix/xml_source.h"

#include <algorithm>
#include <cstdio>

#include "vosmere/platform/code_page.h"
#include "vosmere/platform/xml_document.h"

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

}  // namespace

FileSource::FileSource(const WChar* path) {
  if (!file_.Open(path, Waiting::kAllowed))
    ThrowFileFailure(DocumentFault::kCannotOpen, file_.error(), "the file does not open");
}

int FileSource::Read(char* bytes, int capacity) {
  if (at_ == end_) {
    at_ = 0;
    if (!file_.Read(block_, sizeof block_, &end_))
      ThrowFileFailure(DocumentFault::kCannotRead, file_.error(), "the file cannot be read");
  }
  const std::size_t part = std::min<std::size_t>(capacity, end_ - at_);
  std::memcpy(bytes, block_ + at_, part);
  at_ += part;
  return static_cast<int>(part);
}

int MemorySource::Read(char* bytes, int capacity) {
  const std::size_t part = std::min<std::size_t>(capacity, left_);
  if (part > 0) std::memcpy(bytes, at_, part);
  at_ += part;
  left_ -= part;
  return static_cast<int>(part);
}

int TextSource::Read(char* bytes, int capacity) {
  if (text_.empty()) return 0;
  const WideView piece = text_.First(capacity / 3);
  std::size_t whole = WellFormedLength(piece);
  if (whole == 0) return -1;
  text_ = text_.From(whole);
  return WideToBytes(kCodePageUtf8, piece.data, static_cast<int>(whole), bytes, capacity);
}

}  // namespace vosmere::posix
