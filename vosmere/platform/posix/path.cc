// Paths in UTF-16 and file names in bytes.
#include "vosmere/platform/posix/path.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "vosmere/base/system_string.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/path.h"
#include "vosmere/platform/posix/utf8.h"

namespace vosmere {
namespace {

constexpr unsigned kByte = 0xDC00;  // this unpaired surrogate plus a byte is that byte of a name

/// Whether `unit` is a byte of a name. A low surrogate after a high one is not: the two are a
/// character. `before` is the code unit before it.
bool IsByte(WChar before, WChar unit) {
  return !IsHighSurrogate(before) && (unit == (kByte | '\\') || (unit >= 0xDC80 && unit <= 0xDCFF));
}

/// The length in bytes of the UTF-8 character at the start of a name; 0 when the first byte has to
/// be written as a surrogate. A sequence is a character only if it converts back to the same bytes,
/// which excludes ill-formed ones.
std::size_t CharacterLength(std::string_view name) {
  if (name[0] == '\\') return 0;
  for (std::size_t length = 1; length <= std::min<std::size_t>(name.size(), 4); ++length) {
    WChar units[4];
    char back[4 * utf8::kMaxBytesPerUnit];
    const std::size_t count = utf8::Decode(name.data(), length, units, 4);
    if (name.substr(0, length) ==
        std::string_view(back, utf8::Encode(units, count, back, sizeof back)))
      return length;
  }
  return 0;
}

}  // namespace

bool NativePath(const WChar* path, char (&name)[PATH_MAX]) {
  const WChar* const end = path + WideLength(path);
  char* out = name;
  char* const outEnd = name + PATH_MAX - 1;
  for (const WChar* in = path; in != end;) {
    const WChar* plain = in;
    while (plain != end && !IsByte(plain == path ? WChar{0} : plain[-1], *plain)) ++plain;
    const std::size_t length = utf8::Encode(in, plain - in, out, outEnd - out);
    if (length == utf8::kNoRoom || (plain != end && out + length == outEnd)) {
      errno = ENAMETOOLONG;
      return false;
    }
    // Only in this part: a backslash that belongs to a name comes as a surrogate.
    std::replace(out, out + length, '\\', '/');
    out += length;
    if (plain != end) *out++ = static_cast<char>(*plain++ & 0xFF);
    in = plain;
  }
  *out = 0;
  return true;
}

std::size_t PathOfName(std::string_view name, WChar* path, std::size_t capacity) {
  std::size_t units = 0;
  while (!name.empty()) {
    const std::size_t length = CharacterLength(name);
    std::size_t count = utf8::Decode(name.data(), length, path + units, capacity - units);
    if (length == 0 && units < capacity) {
      path[units] = static_cast<WChar>(kByte | static_cast<unsigned char>(name[0]));
      count = 1;
    }
    if (count == 0 || count == utf8::kNoRoom) return utf8::kNoRoom;
    units += count;
    name.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return units;
}

bool NameFromPath(const WChar* path, char* name, std::size_t capacity) {
  char native[PATH_MAX];
  if (!NativePath(path, native)) return false;
  const std::size_t size = std::strlen(native) + 1;
  if (size > capacity) return false;
  std::memcpy(name, native, size);
  return true;
}

BSTR PathFromName(const char* name) {
  if (!name) return nullptr;
  const std::size_t length = std::strlen(name);
  const BSTR room = SysAllocStringLen(nullptr, length);
  if (!room) return nullptr;
  const BSTR path = SysAllocStringLen(room, PathOfName({name, length}, room, length));
  SysFreeString(room);
  return path;
}

}  // namespace vosmere
