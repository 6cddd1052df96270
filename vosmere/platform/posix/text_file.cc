// Reads text files that were written on Windows.
#include "vosmere/platform/posix/text_file.h"

#include <algorithm>
#include <string_view>

#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/posix/utf8.h"

namespace vosmere {
namespace {

constexpr std::size_t kFirstBlock = 4096;

std::u16string FromUtf16(std::string_view bytes, bool bigEndian) {
  std::u16string text(bytes.size() / 2, 0);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto first = static_cast<unsigned char>(bytes[2 * i]);
    const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
    text[i] = static_cast<char16_t>(bigEndian ? first << 8 | second : second << 8 | first);
  }
  return text;
}

std::u16string FromLatin1(const std::string& bytes) {
  std::u16string text;
  for (const char byte : bytes) text += static_cast<unsigned char>(byte);
  return text;
}

}  // namespace

std::u16string WideOf(const std::string& utf8) {
  std::u16string text(utf8.size(), 0);
  text.resize(
      utf8::Decode(utf8.data(), utf8.size(), reinterpret_cast<WChar*>(text.data()), text.size()));
  return text;
}

std::string Utf8Of(const std::u16string& text) {
  const auto* const units = reinterpret_cast<const WChar*>(text.data());
  std::string utf8(utf8::EncodedLength(units, text.size()), 0);
  utf8::Encode(units, text.size(), utf8.data(), utf8.size());
  return utf8;
}

std::string TextOf(std::string bytes) {
  const std::string_view view = bytes;
  if (view.starts_with("\xFF\xFE")) return Utf8Of(FromUtf16(view.substr(2), false));
  if (view.starts_with("\xFE\xFF")) return Utf8Of(FromUtf16(view.substr(2), true));
  if (view.starts_with("\xEF\xBB\xBF")) return bytes.substr(3);
  const bool ascii = std::none_of(bytes.begin(), bytes.end(), [](char c) { return c & 0x80; });
  if (!ascii && Utf8Of(WideOf(bytes)) != bytes) return Utf8Of(FromLatin1(bytes));
  return bytes;
}

bool ReadWholeFile(const WChar* path, std::size_t limit, std::string* bytes) {
  File file;
  if (!file.Open(path)) return false;
  bytes->clear();
  for (std::size_t got = 1; got > 0;) {
    const std::size_t size = bytes->size();
    if (size > limit) return false;
    const std::size_t block = std::max(size, kFirstBlock);
    bytes->resize(size + block);
    const bool read = file.Read(bytes->data() + size, block, &got);
    bytes->resize(size + (read ? got : 0));
    if (!read) return false;
  }
  return true;
}

}  // namespace vosmere
