// Where the parser's bytes come from.
#pragma once

#include <cstddef>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/file.h"

namespace vosmere::posix {

/// Hands out a document in pieces.
class XmlSource {
 public:
  virtual ~XmlSource() = default;
  /// Up to `capacity` bytes; 0 at the end, -1 when there is no going on.
  virtual int Read(char* bytes, int capacity) = 0;
};

class FileSource : public XmlSource {
 public:
  /// Throws DocumentFailure when the file does not open.
  explicit FileSource(const WChar* path);
  int Read(char* bytes, int capacity) override;

 private:
  File file_;
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  char block_[32 * 1024];
};

class MemorySource : public XmlSource {
 public:
  MemorySource(const char* bytes, std::size_t length) : at_(bytes), left_(length) {}
  int Read(char* bytes, int capacity) override;

 private:
  const char* at_;
  std::size_t left_;
};

/// Wide text as UTF-8. Ends with a failure at an unpaired surrogate, which is no character.
class TextSource : public XmlSource {
 public:
  explicit TextSource(WideView text) : text_(text) {}
  int Read(char* bytes, int capacity) override;

 private:
  WideView text_;
};

}  // namespace vosmere::posix
