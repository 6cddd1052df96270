// Paths from UTF-8 names.
#include "vosmere/platform/path.h"

#include <cstring>

#include "vosmere/base/system_string.h"
#include "vosmere/platform/internal/code_page.h"

namespace vosmere {

BSTR PathFromName(const char* name) {
  if (!name) return nullptr;
  const int length = static_cast<int>(std::strlen(name));
  const int units = BytesToWide(kCodePageUtf8, name, length, nullptr, 0);
  const BSTR path = SysAllocStringLen(nullptr, static_cast<std::size_t>(units));
  if (path && units > 0) BytesToWide(kCodePageUtf8, name, length, path, units);
  return path;
}

}  // namespace vosmere
