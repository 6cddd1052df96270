#include "vosmere/platform/uuid.h"

#include <uuid/uuid.h>

#include <algorithm>

namespace vosmere {

bool NewUuidText(WChar (&text)[kUuidTextLength + 1]) {
  uuid_t uuid;
  uuid_generate(uuid);
  char bytes[kUuidTextLength + 1];
  uuid_unparse_lower(uuid, bytes);
  std::copy(bytes, bytes + sizeof bytes, text);
  return true;
}

}  // namespace vosmere
