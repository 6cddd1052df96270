// The characters of ASCII, in code units of any type and in every locale.
#pragma once

#include <cstdint>
#include <type_traits>

namespace vosmere::ascii {

template <class Unit>
constexpr bool IsDigit(Unit unit) {
  return unit >= '0' && unit <= '9';
}

/// Lower case for a letter. No other code unit becomes a letter, but it may become another one.
template <class Unit>
constexpr std::uint32_t FoldLetter(Unit unit) {
  return static_cast<std::make_unsigned_t<Unit>>(unit) | 0x20u;
}

template <class Unit>
constexpr bool IsLetter(Unit unit) {
  return FoldLetter(unit) - 'a' < 26;
}

/// Lower case for A to Z; every other code unit is returned unchanged.
template <class Unit>
constexpr Unit Fold(Unit unit) {
  return unit >= 'A' && unit <= 'Z' ? static_cast<Unit>(unit + ('a' - 'A')) : unit;
}

/// White space as XML has it.
template <class Unit>
constexpr bool IsBlank(Unit unit) {
  return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
}

/// White space as isspace has it in the "C" locale.
template <class Unit>
constexpr bool IsSpace(Unit unit) {
  return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

}  // namespace vosmere::ascii
