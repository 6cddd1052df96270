// Security zones from the system's security manager.
#include "vosmere/platform/security_zone.h"

#include "vosmere/platform/win32/com.h"

#include <urlmon.h>

namespace vosmere {
namespace {

static_assert(kZoneLocalMachine == URLZONE_LOCAL_MACHINE && kZoneIntranet == URLZONE_INTRANET &&
              kZoneInternet == URLZONE_INTERNET);

/// Initialises COM for the thread while the object exists. On a thread where it is initialised
/// already, its apartment stays as it is.
class ComScope {
 public:
  ComScope() : entered_(SUCCEEDED(::CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
  ComScope(const ComScope&) = delete;
  ComScope& operator=(const ComScope&) = delete;
  ~ComScope() {
    if (entered_) ::CoUninitialize();
  }

 private:
  bool entered_;
};

}  // namespace

LONG SystemSecurityZone(const WChar* url) {
  const ComScope com;
  win32::Counted<IInternetSecurityManager> manager;
  if (FAILED(::CoInternetCreateSecurityManager(nullptr, manager.out(), 0))) return kZoneUnknown;
  DWORD zone = kZoneUnknown;
  const HRESULT result = manager->MapUrlToZone(win32::Native(url), &zone, 0);
  // For an address without a host, Wine reports success with an invalid zone.
  return FAILED(result) || static_cast<LONG>(zone) < 0 ? kZoneUnknown : static_cast<LONG>(zone);
}

}  // namespace vosmere
