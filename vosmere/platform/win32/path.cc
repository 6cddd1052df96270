#include "vosmere/platform/path.h"

#include <cstring>

#include "vosmere/platform/code_page.h"
#include "vosmere/platform/system_string.h"

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
