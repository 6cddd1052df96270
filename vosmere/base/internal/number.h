// Decimal numbers at the start of a text, read as C's conversions read them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

#include "vosmere/base/types.h"

namespace vosmere {

template <class Unit>
constexpr bool IsDigit(Unit unit) {
  return unit >= '0' && unit <= '9';
}

/// White space of the "C" locale, whatever locale is set.
template <class Unit>
constexpr bool IsSpace(Unit unit) {
  return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

/// Reads white space, a sign and digits up to `end`, or up to a zero unit when `end` is null. The
/// value saturates at 32 bits, and is 0 without digits. Returns the place behind the last digit;
/// null without digits.
template <class Unit>
constexpr const Unit* ReadNumber(const Unit* text, const Unit* end, LONG* value) {
  bool negative = false;
  if (text != end && !IsDigit(*text)) {  // mostly there is neither
    while (text != end && IsSpace(*text)) ++text;
    negative = text != end && *text == '-';
    if (text != end && (*text == '-' || *text == '+')) ++text;
  }
  const Unit* const digits = text;
  std::uint64_t magnitude = 0;
  for (; text != end && IsDigit(*text); ++text) magnitude = magnitude * 10 + (*text - '0');
  constexpr std::uint64_t kLimit = std::numeric_limits<LONG>::max();
  if (text - digits > 9) {  // it may have wrapped
    magnitude = 0;
    for (const Unit* digit = digits; digit != text; ++digit)
      magnitude = std::min(magnitude * 10 + (*digit - '0'), kLimit + 1);
    if (!negative) magnitude = std::min(magnitude, kLimit);
  }
  *value = static_cast<LONG>(static_cast<ULONG>(negative ? -magnitude : magnitude));
  return text == digits ? nullptr : text;
}

}  // namespace vosmere
