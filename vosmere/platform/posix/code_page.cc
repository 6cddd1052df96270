#include "vosmere/platform/code_page.h"

#include <iconv.h>
#include <langinfo.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>
#include <limits>
#include <string>

#include "vosmere/platform/posix/utf8.h"

namespace vosmere {
namespace {

constexpr const char* kUtf16 =
    std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";

/// Bytes converted from one encoding to another; where there is no equivalent, `replacement` stands
/// for the `unit` bytes that have none.
std::string Convert(const char* to, const char* from, const char* bytes, std::size_t length,
                    std::size_t unit, const std::string& replacement) {
  std::string result;
  const iconv_t converter = ::iconv_open(to, from);
  if (converter == reinterpret_cast<iconv_t>(-1)) return result;
  char* in = const_cast<char*>(bytes);
  while (length > 0) {
    char block[1024];
    char* out = block;
    std::size_t room = sizeof block;
    const bool failed = ::iconv(converter, &in, &length, &out, &room) == static_cast<std::size_t>(-1);
    const int error = errno;
    result.append(block, out);
    if (!failed || error == E2BIG) continue;
    result += replacement;
    const std::size_t skipped = std::min(unit, length);
    in += skipped;
    length -= skipped;
  }
  ::iconv_close(converter);
  return result;
}

/// What a conversion of `size` elements into room for `capacity` answers.
int Answer(std::size_t size, int capacity) {
  const auto limit = static_cast<std::size_t>(
      capacity > 0 ? capacity : std::numeric_limits<int>::max());
  return size <= limit ? static_cast<int>(size) : 0;
}

}  // namespace

int WideToBytes(unsigned codePage, const WChar* text, int length, char* bytes, int capacity) {
  if (length <= 0) return 0;
  if (codePage == kCodePageUtf8)
    return Answer(capacity > 0 ? utf8::Encode(text, length, bytes, capacity)
                               : utf8::EncodedLength(text, length),
                  capacity);
  const std::string converted =
      Convert(::nl_langinfo(CODESET), kUtf16, reinterpret_cast<const char*>(text),
              length * sizeof(WChar), sizeof(WChar), "?");
  const int size = Answer(converted.size(), capacity);
  if (capacity > 0) converted.copy(bytes, size);
  return size;
}

int BytesToWide(unsigned codePage, const char* bytes, int length, WChar* text, int capacity) {
  if (length <= 0) return 0;
  if (codePage == kCodePageUtf8)
    return Answer(capacity > 0 ? utf8::Decode(bytes, length, text, capacity)
                               : utf8::DecodedLength(bytes, length),
                  capacity);
  const std::string converted =
      Convert(kUtf16, ::nl_langinfo(CODESET), bytes, length, 1, std::string("?\0", 2));
  const int size = Answer(converted.size() / sizeof(WChar), capacity);
  if (capacity > 0) std::memcpy(text, converted.data(), size * sizeof(WChar));
  return size;
}

}  // namespace vosmere
