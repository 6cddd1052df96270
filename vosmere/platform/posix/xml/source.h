// The sources of a document's bytes.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/posix/xml/arena.h"

namespace vosmere::posix {

/// Delivers a document in pieces.
class XmlSource {
 public:
  virtual ~XmlSource() = default;
  /// Reads up to `capacity` bytes. 0 at the end, -1 when the source cannot continue.
  virtual int Read(char* bytes, int capacity) = 0;
  /// An estimate of the total number of bytes.
  virtual std::size_t Size() = 0;
};

/// A file.
class FileSource : public XmlSource {
 public:
  /// Throws DocumentFailure when the file cannot be opened.
  explicit FileSource(const WChar* path);
  int Read(char* bytes, int capacity) override;
  std::size_t Size() override;

 private:
  File file_;
};

/// Bytes in memory, which the caller owns.
class MemorySource : public XmlSource {
 public:
  explicit MemorySource(std::string_view bytes) : left_(bytes) {}
  int Read(char* bytes, int capacity) override;
  std::size_t Size() override { return left_.size(); }

 private:
  std::string_view left_;
};

/// UTF-16 text of the caller, converted to UTF-8. Fails at an unpaired surrogate, which is not a
/// character.
class TextSource : public XmlSource {
 public:
  explicit TextSource(WideView text) : text_(text) {}
  int Read(char* bytes, int capacity) override;
  std::size_t Size() override { return text_.size; }

 private:
  WideView text_;
};

/// Reads another source into memory in advance, up to the size of usual documents, and delivers it
/// from there.
class ReadAhead : public XmlSource {
 public:
  /// Throws what the source throws, and std::bad_alloc.
  explicit ReadAhead(XmlSource& source);

  /// All bytes of the source. Nothing when there are too many, when the source failed, and when
  /// they do not begin like a document in UTF-8.
  std::optional<std::string_view> Whole() const;
  /// Gives the bytes of Whole to the caller. Nothing may be read afterwards.
  std::unique_ptr<char, FreeBytes> Detach() { return std::move(bytes_); }

  int Read(char* bytes, int capacity) override;
  std::size_t Size() override { return size_; }

 private:
  void Reserve(std::size_t capacity);

  XmlSource& source_;
  std::unique_ptr<char, FreeBytes> bytes_;
  std::size_t capacity_ = 0;
  std::size_t size_ = 0;
  bool ended_ = false;
  std::size_t at_ = 0;
};

}  // namespace vosmere::posix
