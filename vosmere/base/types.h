// The fixed-width types of the interface. They have the same size on every platform, and no public
// header needs a system header for them.
#pragma once

#include <cstdint>

namespace vosmere {

/// One UTF-16 code unit.
using WChar = unsigned short;

/// A system string: zero-terminated UTF-16 whose length in bytes stands in the four bytes before
/// the first unit. Made and freed by the functions of base/system_string.h.
using BSTR = WChar*;

using LONG = std::int32_t;
using ULONG = std::uint32_t;

/// Ticks of 100 ns since 1601-01-01 00:00 UTC, in two halves.
struct FILETIME {
  ULONG dwLowDateTime;
  ULONG dwHighDateTime;
};

}  // namespace vosmere
