// The hook in front of the platform's security zones.
#include "vosmere/platform/security_zone.h"

#include <atomic>

namespace vosmere {
namespace {

constexpr WChar kNoAddress[1] = {0};

std::atomic<LONG (*)(const WChar*)> zoneCheck{SystemSecurityZone};

}  // namespace

LONG SecurityZone(const WChar* url) {
  return zoneCheck.load()(url ? url : kNoAddress);
}

void SetSecurityZoneCheck(LONG (*check)(const WChar* url)) {
  zoneCheck = check ? check : SystemSecurityZone;
}

}  // namespace vosmere
