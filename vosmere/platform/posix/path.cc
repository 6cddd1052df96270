#include "vosmere/platform/posix/path.h"

#include <algorithm>
#include <cerrno>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/posix/utf8.h"

namespace vosmere {

bool NativePath(const WChar* path, char (&name)[PATH_MAX]) {
  const std::size_t length = utf8::Encode(path, WideLength(path), name, sizeof name - 1);
  if (length == utf8::kNoRoom) {
    errno = ENAMETOOLONG;
    return false;
  }
  name[length] = 0;
  std::replace(name, name + length, '\\', '/');
  return true;
}

}  // namespace vosmere
