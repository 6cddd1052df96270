// The comparisons of names and numbers that all sorters share.
#pragma once

#include "vosmere/base/ascii.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// Compares two names case-insensitively (ASCII) over the length of `a` only. The result is
/// negative, zero or positive; null is treated as the empty text.
/// Intended: a name equals every name that begins with it (ab and abc give 0), but not the other
/// way round (abc and ab give a positive number). The order of sorted menus depends on it.
inline int CompareTextNoCase(const WChar* a, const WChar* b) {
  static const WChar empty[1] = {0};
  if (!a) return 0;
  if (!b) b = empty;
  for (; *a; ++a, ++b) {
    const int difference = ascii::Fold(*a) - ascii::Fold(*b);
    if (difference != 0) return difference;
  }
  return 0;
}

/// -1, 0 or 1.
inline int CompareNumber(LONG a, LONG b) {
  return a > b ? 1 : a < b ? -1 : 0;
}

}  // namespace vosmere
