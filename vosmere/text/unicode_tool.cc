#include "vosmere/text/unicode_tool.h"

#include <climits>
#include <cstring>
#include <new>

#include "vosmere/base/trace.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/code_page.h"
#include "vosmere/platform/system_string.h"

namespace vosmere {
namespace {

/// A new zero-terminated buffer, or null without memory. `*length` is set with the buffer only.
char* Convert(unsigned codePage, WideView source, int* length) {
  if (source.size > INT_MAX) return nullptr;
  const int units = static_cast<int>(source.size);
  const int size = WideToBytes(codePage, source.data, units, nullptr, 0);
  if (size == 0 && units > 0) return nullptr;
  auto* const text = new (std::nothrow) char[static_cast<std::size_t>(size) + 1];
  if (!text) return nullptr;
  *length = size > 0 ? WideToBytes(codePage, source.data, units, text, size) : 0;
  text[*length] = 0;
  return text;
}

bool ConvertInto(unsigned codePage, WideView source, char** text, int* length) {
  char* const converted = Convert(codePage, source, length);
  if (converted) *text = converted;
  return converted != nullptr;
}

}  // namespace

CUnicodeTool::~CUnicodeTool() = default;

bool CUnicodeTool::BSTRGetUTF8(const WChar* source, char** text, int* length) {
  return ConvertInto(kCodePageUtf8, {source, SysStringLen(source)}, text, length);
}

bool CUnicodeTool::TCHARGetUTF8(const WChar* source, char** text, int* length) {
  *text = nullptr;
  return ConvertInto(kCodePageUtf8, WideView(source), text, length);
}

bool CUnicodeTool::TCHARGetASCII(const WChar* source, char** text, int* length) {
  return ConvertInto(kCodePageSystem, WideView(source), text, length);
}

bool CUnicodeTool::UTF8GetBSTR(BSTR* result, const char* source, int length) {
  if (!source || length < 0) return false;
  if (length == 0) {
    const std::size_t measured = std::strlen(source);
    if (measured == 0 || measured > INT_MAX) return false;
    length = static_cast<int>(measured);
  }
  const int units = BytesToWide(kCodePageUtf8, source, length, nullptr, 0);
  const BSTR text = SysAllocStringLen(nullptr, units);
  if (!text) return false;
  if (units == 0 || BytesToWide(kCodePageUtf8, source, length, text, units) == 0) {
    Trace("Error=0X%08X\n", 0u);
    SysFreeString(text);
    return false;
  }
  text[units] = 0;
  *result = text;
  return true;
}

void CUnicodeTool::DeleteBuffer(char* text) { delete[] text; }

}  // namespace vosmere
