// Where the parser's bytes come from.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string_view>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/file.h"

namespace vosmere::posix {

/// Hands out a document in pieces.
class XmlSource {
 public:
  virtual ~XmlSource() = default;
  /// Up to `capacity` bytes; 0 at the end, -1 when there is no going on.
  virtual int Read(char* bytes, int capacity) = 0;
  /// A guess at how many bytes there are in all.
  virtual std::size_t Size() = 0;
};

class FileSource : public XmlSource {
 public:
  /// Throws DocumentFailure when the file does not open.
  explicit FileSource(const WChar* path);
  int Read(char* bytes, int capacity) override;
  std::size_t Size() override;

 private:
  File file_;
};

class MemorySource : public XmlSource {
 public:
  explicit MemorySource(std::string_view bytes) : left_(bytes) {}
  int Read(char* bytes, int capacity) override;
  std::size_t Size() override { return left_.size(); }

 private:
  std::string_view left_;
};

/// Wide text as UTF-8. Ends with a failure at an unpaired surrogate, which is no character.
class TextSource : public XmlSource {
 public:
  explicit TextSource(WideView text) : text_(text) {}
  int Read(char* bytes, int capacity) override;
  std::size_t Size() override { return text_.size; }

 private:
  WideView text_;
};

/// Reads another source as far as a document of the usual size goes, and hands it out from memory.
class ReadAhead : public XmlSource {
 public:
  /// Throws what the source throws, and std::bad_alloc.
  explicit ReadAhead(XmlSource& source);

  /// All bytes of the source; nothing when there are too many, or no going on, or they do not begin
  /// as a document in UTF-8 does.
  std::optional<std::string_view> Whole() const;

  int Read(char* bytes, int capacity) override;
  std::size_t Size() override { return size_; }

 private:
  struct FreeBytes {
    void operator()(char* bytes) const { std::free(bytes); }
  };

  void Reserve(std::size_t capacity);

  XmlSource& source_;
  std::unique_ptr<char, FreeBytes> bytes_;
  std::size_t capacity_ = 0;
  std::size_t size_ = 0;
  bool ended_ = false;
  std::size_t at_ = 0;
};

}  // namespace vosmere::posix
