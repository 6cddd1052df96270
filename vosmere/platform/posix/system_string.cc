#include "vosmere/platform/system_string.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

#include "vosmere/base/wide_view.h"

namespace vosmere {
namespace {

using Prefix = std::uint32_t;

char* Block(const WChar* string) {
  return reinterpret_cast<char*>(const_cast<WChar*>(string)) - sizeof(Prefix);
}

}  // namespace

BSTR SysAllocString(const WChar* text) {
  return text ? SysAllocStringLen(text, WideLength(text)) : nullptr;
}

BSTR SysAllocStringLen(const WChar* text, std::size_t length) {
  constexpr std::size_t kOverhead = sizeof(Prefix) + sizeof(WChar);
  if (length > (std::numeric_limits<Prefix>::max() - kOverhead) / sizeof(WChar)) return nullptr;
  const auto size = static_cast<Prefix>(length * sizeof(WChar));
  auto* const block = static_cast<char*>(::operator new(size + kOverhead, std::nothrow));
  if (!block) return nullptr;
  std::memcpy(block, &size, sizeof size);
  auto* const string = reinterpret_cast<BSTR>(block + sizeof(Prefix));
  if (text) std::memcpy(string, text, size);
  string[length] = 0;
  return string;
}

int SysReAllocString(BSTR* string, const WChar* text) {
  const BSTR copy = SysAllocString(text);
  if (text && !copy) return 0;
  SysFreeString(*string);
  *string = copy;
  return 1;
}

unsigned SysStringLen(const WChar* string) {
  Prefix size = 0;
  if (string) std::memcpy(&size, Block(string), sizeof size);
  return size / sizeof(WChar);
}

void SysFreeString(BSTR string) {
  if (string) ::operator delete(Block(string));
}

}  // namespace vosmere
