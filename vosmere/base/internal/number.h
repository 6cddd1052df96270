// Reads decimal numbers at the start of a text, as C's strtol does, but saturated to 32 bits.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "vosmere/base/ascii.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Reads optional white space, an optional sign and digits, up to `end`, or up to the terminating
/// null when `end` is null. Stores the value, saturated to 32 bits; 0 if there are no digits.
/// Returns the position after the last digit, or null if there are no digits.
template <class Unit>
constexpr const Unit* ReadNumber(const Unit* text, const Unit* end, LONG* value) {
  bool negative = false;
  if (text != end && !ascii::IsDigit(*text)) {  // usually there is neither space nor sign
    while (text != end && ascii::IsSpace(*text)) ++text;
    negative = text != end && *text == '-';
    if (text != end && (*text == '-' || *text == '+')) ++text;
  }
  const Unit* const digits = text;
  std::uint64_t magnitude = 0;
  for (; text != end && ascii::IsDigit(*text); ++text) magnitude = magnitude * 10 + (*text - '0');
  constexpr std::uint64_t kLimit = std::numeric_limits<LONG>::max();
  if (magnitude > kLimit || text - digits > 19) {  // 20 digits may have wrapped
    magnitude = 0;
    for (const Unit* digit = digits; digit != text; ++digit)
      magnitude = std::min(magnitude * 10 + (*digit - '0'), kLimit + 1);
    if (!negative) magnitude = std::min(magnitude, kLimit);
  }
  *value = static_cast<LONG>(static_cast<ULONG>(negative ? -magnitude : magnitude));
  return text == digits ? nullptr : text;
}

}  // namespace vosmere
