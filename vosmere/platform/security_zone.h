// Security zones: how far an address is trusted, the higher the less.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

inline constexpr LONG kZoneLocalMachine = 0;
inline constexpr LONG kZoneIntranet = 1;
inline constexpr LONG kZoneInternet = 3;
inline constexpr LONG kZoneUnknown = 5;

/// The zone of an address by the check that is set, else by the platform. Null is an empty address.
VOSMERE_API LONG SecurityZone(const WChar* url);

/// The platform's answer.
///
/// On Windows that of the system's security manager, which knows the user's settings; an address
/// that it has no zone for is of no known zone. A thread without COM is given it for the length of
/// the call, and keeps none.
///
/// Elsewhere the address itself decides. A path, or a `file` address without another host, is the
/// local machine's. An `http`, `https` or `ftp` address whose host is a name without a dot or a
/// loopback address is of the intranet, and so is a network path to such a host. All else is of the
/// Internet. What others may take for another host (a bare number, percent signs, backslashes,
/// letters beyond ASCII) is of the Internet too.
VOSMERE_API LONG SystemSecurityZone(const WChar* url);

/// Lets an embedding program that knows better answer instead; null restores the platform's. The
/// check may be called on several threads at once, and must not throw. CTabUrlData (tab_url.h)
/// calls it with its lock held: it must not wait for a thread that uses the same tab, nor change
/// that tab itself.
VOSMERE_API void SetSecurityZoneCheck(LONG (*check)(const WChar* url));

}  // namespace vosmere
