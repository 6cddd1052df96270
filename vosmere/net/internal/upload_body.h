// UploadBody, the body of an upload, which is sent in pieces.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/internal/http.h"

namespace vosmere {

/// The four parts of the body, in the order in which they are sent.
struct UploadBody {
  std::string head;
  const char* data = nullptr;
  std::size_t dataSize = 0;
  std::string fields;
  std::string tail;

  // The owner of `data`: a text or a mapped file.
  std::string text;
  std::unique_ptr<File> file;
  std::unique_ptr<FileMapping> mapping;

  std::uint64_t size() const {
    return std::uint64_t{head.size()} + dataSize + fields.size() + tail.size();
  }

  /// Passes all bytes to `take`, which returns kNone or an error that ends the loop. If the file
  /// has become shorter than announced, the remaining parts are not sent, so that the server cannot
  /// take the body for complete. Pages of the file are given back after they were sent, so a large
  /// file does not fill the memory.
  template <class Take>
  http::Error ForEachPiece(Take take) const {
    const auto takeText = [&](const std::string& part) {
      return part.empty() ? http::kNone : take(part.data(), part.size());
    };
    http::Error error = takeText(head);
    for (std::size_t at = 0, length; !error && at < dataSize; at += length) {
      length = std::min(kPiece, dataSize - at);
      error = take(data + at, length);
      if (mapping) mapping->Forget(at, length);
    }
    if (!error && HasShrunk()) error = http::kFileInvalid;
    if (!error) error = takeText(fields);
    return error ? error : takeText(tail);
  }

 private:
  static constexpr std::size_t kPiece = std::size_t{640} * 1024;

  bool HasShrunk() const {
    std::uint64_t now = 0;
    return file && (!file->Size(&now) || now < dataSize);
  }
};

}  // namespace vosmere
