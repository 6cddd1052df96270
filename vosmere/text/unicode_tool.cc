// The conversions, in memory of exactly the size of the result.
#include "vosmere/text/unicode_tool.h"

#include <climits>
#include <cstring>
#include <memory>
#include <new>

#include "vosmere/base/system_string.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/trace.h"

namespace vosmere {
namespace {

// In code units. A text up to this length is converted into a buffer on the stack and then copied
// to memory of its size, which is faster than to measure it first.
constexpr int kShort = 2048;

char* NewBytes(int length) {
  auto* const bytes = new (std::nothrow) char[std::size_t(length) + 1];
  if (bytes) bytes[length] = 0;
  return bytes;
}

/// Null when memory runs out. A text whose length does not fit into an int counts as such.
char* ToBytes(unsigned codePage, WideView source, int* length) {
  if (source.size > INT_MAX) return nullptr;
  const int units = static_cast<int>(source.size);
  // UTF-8 needs at most 3 bytes per code unit. Another code page may need more; then size is 0.
  char scratch[3 * kShort];
  int size =
      units <= kShort ? WideToBytes(codePage, source.data, units, scratch, sizeof scratch) : 0;
  const bool converted = size != 0 || units == 0;
  if (!converted) size = WideToBytes(codePage, source.data, units, nullptr, 0);
  if (size == 0 && units != 0) return nullptr;

  char* const bytes = NewBytes(size);
  if (!bytes) return nullptr;
  if (converted)
    std::memcpy(bytes, scratch, size);
  else
    WideToBytes(codePage, source.data, units, bytes, size);
  *length = size;
  return bytes;
}

bool Convert(unsigned codePage, WideView source, char** text, int* length) {
  char* const bytes = ToBytes(codePage, source, length);
  if (bytes) *text = bytes;
  return bytes != nullptr;
}

// Every byte gives at most one code unit, so the result fits into `length` code units. Measuring
// would take as long as converting; a long text is therefore converted into temporary memory.
BSTR ToWide(const char* source, int length) {
  WChar scratch[kShort];
  std::unique_ptr<WChar[]> more;
  if (length > kShort) {
    more.reset(new (std::nothrow) WChar[length]);
    if (!more) return nullptr;
  }
  WChar* const text = more ? more.get() : scratch;
  const int units = BytesToWide(kCodePageUtf8, source, length, text, length);
  return units ? SysAllocStringLen(text, units) : nullptr;
}

}  // namespace

CUnicodeTool::~CUnicodeTool() = default;

bool CUnicodeTool::BSTRGetUTF8(const WChar* source, char** text, int* length) {
  return Convert(kCodePageUtf8, WideView(source, SysStringLen(source)), text, length);
}

bool CUnicodeTool::TCHARGetUTF8(const WChar* source, char** text, int* length) {
  if (Convert(kCodePageUtf8, WideView(source), text, length)) return true;
  *text = nullptr;
  return false;
}

bool CUnicodeTool::TCHARGetASCII(const WChar* source, char** text, int* length) {
  return Convert(kCodePageSystem, WideView(source), text, length);
}

bool CUnicodeTool::UTF8GetBSTR(BSTR* result, const char* source, int length) {
  if (!source || length < 0) return false;
  const std::size_t size = length ? length : std::strlen(source);
  if (size == 0) return false;
  BSTR const text = size <= INT_MAX ? ToWide(source, static_cast<int>(size)) : nullptr;
  if (!text) {
    // ERROR_OUTOFMEMORY of Windows; the same number is traced on Linux.
    constexpr unsigned kOutOfMemory = 14;
    Trace("Error=0X%08X\n", kOutOfMemory);
    return false;
  }
  *result = text;
  return true;
}

void CUnicodeTool::DeleteBuffer(char* text) {
  delete[] text;
}

}  // namespace vosmere
