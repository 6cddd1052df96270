// New UUIDs from libuuid.
#include "vosmere/platform/internal/uuid.h"

#include <uuid/uuid.h>

#include <algorithm>

namespace vosmere {

bool NewUuidText(WChar (&text)[kUuidTextLength + 1]) {
  uuid_t uuid;
  char letters[kUuidTextLength + 1];
  uuid_generate_random(uuid);
  uuid_unparse_lower(uuid, letters);
  std::copy_n(letters, kUuidTextLength + 1, text);
  return true;
}

}  // namespace vosmere
