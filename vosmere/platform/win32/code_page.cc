// Code pages by the conversions of Windows.
#include "vosmere/platform/internal/code_page.h"

#include <limits>
#include <new>
#include <string>
#include <string_view>

#include "vosmere/platform/win32/com.h"

namespace vosmere {
namespace {

/// Length of the UTF-8 sequence at the start, or of its well-formed beginning when it is not
/// complete.
std::size_t SequenceLength(std::string_view bytes, bool* complete) {
  const auto at = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  const unsigned lead = at(0);
  const std::size_t whole = lead < 0x80   ? 1
                            : lead < 0xC2 ? 0
                            : lead < 0xE0 ? 2
                            : lead < 0xF0 ? 3
                            : lead < 0xF5 ? 4
                                          : 0;
  unsigned low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  unsigned high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  std::size_t length = 1;
  while (length < whole && length < bytes.size() && at(length) >= low && at(length) <= high) {
    ++length;
    low = 0x80;
    high = 0xBF;
  }
  *complete = length == whole;
  return length;
}

/// Replaces each maximal ill-formed part by U+FFFD. It is done here because versions of Windows
/// differ in the number of replacement characters.
std::string Repaired(std::string_view bytes) {
  std::string repaired;
  for (std::size_t length; !bytes.empty(); bytes.remove_prefix(length)) {
    bool complete;
    length = SequenceLength(bytes, &complete);
    repaired += complete ? bytes.substr(0, length) : "\xEF\xBF\xBD";
  }
  return repaired;
}

}  // namespace

static_assert(kCodePageSystem == CP_ACP && kCodePageUtf8 == CP_UTF8);

// A length of 0 or less is handled here: the system takes -1 for a null-terminated text.
int WideToBytes(unsigned codePage, const WChar* text, int length, char* bytes, int capacity) {
  if (length <= 0) return 0;
  return ::WideCharToMultiByte(codePage, 0, win32::Native(text), length, bytes, capacity, nullptr,
                               nullptr);
}

int BytesToWide(unsigned codePage, const char* bytes, int length, WChar* text, int capacity) {
  if (length <= 0) return 0;
  const auto convert = [&](DWORD flags, const char* from, std::size_t size) {
    if (size > static_cast<std::size_t>(std::numeric_limits<int>::max())) return 0;
    return ::MultiByteToWideChar(codePage, flags, from, static_cast<int>(size), win32::Native(text),
                                 capacity);
  };
  if (codePage != kCodePageUtf8) return convert(0, bytes, length);
  const int converted = convert(MB_ERR_INVALID_CHARS, bytes, length);
  if (converted > 0 || ::GetLastError() != ERROR_NO_UNICODE_TRANSLATION) return converted;
  try {
    const std::string repaired = Repaired({bytes, static_cast<std::size_t>(length)});
    return convert(0, repaired.data(), repaired.size());
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

}  // namespace vosmere
