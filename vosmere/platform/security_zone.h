// Security zones of addresses. The higher the number, the less an address is trusted.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The numbers are those of Windows.
inline constexpr LONG kZoneLocalMachine = 0;
inline constexpr LONG kZoneIntranet = 1;
inline constexpr LONG kZoneInternet = 3;
inline constexpr LONG kZoneUnknown = 5;

/// The zone of an address, from the check set with SetSecurityZoneCheck or else from
/// SystemSecurityZone. Null is treated as an empty address.
VOSMERE_API LONG SecurityZone(const WChar* url);

/// The zone of an address according to the platform.
///
/// On Windows it is the answer of the system's security manager, which knows the user's settings,
/// and kZoneUnknown for an address without a zone. A thread that has not initialised COM gets it
/// initialised for the duration of the call only.
///
/// On other systems only the text of the address decides. A path, and a `file` address without a
/// remote host, is on the local machine. An `http`, `https` or `ftp` address belongs to the
/// intranet if its host is a name without a dot or a loopback address; so does a network path to
/// such a host. Everything else belongs to the Internet. This includes hosts that other programs
/// may interpret differently: plain numbers, and names with percent signs, backslashes or letters
/// beyond ASCII.
VOSMERE_API LONG SystemSecurityZone(const WChar* url);

/// Sets a function that SecurityZone calls instead of asking the platform; null restores the
/// platform's answer. The function may be called on several threads at once and must not throw.
/// CTabUrlData (tab_url.h) calls it while holding its lock, so it must neither wait for a thread
/// that uses the same tab nor change that tab.
VOSMERE_API void SetSecurityZoneCheck(LONG (*check)(const WChar* url));

}  // namespace vosmere
