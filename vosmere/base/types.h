// The fixed-width types of the interface. They have the same size on every platform, and spare the
// public headers the inclusion of system headers.
#pragma once

#include <cstdint>

namespace vosmere {

/// One UTF-16 code unit. Not wchar_t, which has 32 bits on Linux.
using WChar = unsigned short;

/// A system string: null-terminated UTF-16 with its length in bytes in the four bytes before the
/// first code unit. Allocated and freed by the functions of base/system_string.h.
using BSTR = WChar*;

/// 32 bits on every platform, unlike `long`.
using LONG = std::int32_t;
using ULONG = std::uint32_t;

/// A number of 100-nanosecond intervals since 1601-01-01 00:00 UTC, as two 32-bit halves.
struct FILETIME {
  ULONG dwLowDateTime;
  ULONG dwHighDateTime;
};

}  // namespace vosmere
