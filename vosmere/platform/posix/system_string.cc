// System strings in the layout of Windows: the length in bytes comes before the text.
#include "vosmere/base/system_string.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

#include "vosmere/base/wide_view.h"

namespace vosmere {
namespace {

using Prefix = std::uint32_t;

/// Bytes before the text: its length in the last four, after four that keep the text aligned.
constexpr std::size_t kHeader = 8;

}  // namespace

BSTR SysAllocString(const WChar* text) {
  return text ? SysAllocStringLen(text, WideLength(text)) : nullptr;
}

BSTR SysAllocStringLen(const WChar* text, std::size_t length) {
  if (length > std::numeric_limits<Prefix>::max() / sizeof(WChar) - 1) return nullptr;
  const auto bytes = static_cast<Prefix>(length * sizeof(WChar));
  auto* const memory =
      static_cast<char*>(::operator new(kHeader + bytes + sizeof(WChar), std::nothrow));
  if (!memory) return nullptr;
  std::memcpy(memory + kHeader - sizeof bytes, &bytes, sizeof bytes);
  if (text) std::memcpy(memory + kHeader, text, bytes);
  const auto string = reinterpret_cast<BSTR>(memory + kHeader);
  string[length] = 0;
  return string;
}

int SysReAllocString(BSTR* string, const WChar* text) {
  BSTR const copy = SysAllocString(text);
  if (text && !copy) return 0;
  SysFreeString(*string);
  *string = copy;
  return 1;
}

unsigned SysStringLen(const WChar* string) {
  if (!string) return 0;
  Prefix bytes;
  std::memcpy(&bytes, reinterpret_cast<const char*>(string) - sizeof bytes, sizeof bytes);
  return bytes / sizeof(WChar);
}

void SysFreeString(BSTR string) {
  if (string) ::operator delete(reinterpret_cast<char*>(string) - kHeader);
}

}  // namespace vosmere
