// New UUIDs by the RPC functions.
#include "vosmere/platform/internal/uuid.h"

#include <rpc.h>

#include <algorithm>

#include "vosmere/platform/win32/com.h"

namespace vosmere {

bool NewUuidText(WChar (&text)[kUuidTextLength + 1]) {
  UUID uuid;
  // RPC_S_UUID_LOCAL_ONLY means that the UUID may not be unique among machines; it is accepted.
  const RPC_STATUS made = ::UuidCreate(&uuid);
  if (made != RPC_S_OK && made != RPC_S_UUID_LOCAL_ONLY) return false;
  RPC_WSTR rendered = nullptr;
  if (::UuidToStringW(&uuid, &rendered) != RPC_S_OK) return false;
  std::copy_n(rendered, kUuidTextLength + 1, text);
  ::RpcStringFreeW(&rendered);
  return true;
}

}  // namespace vosmere
