// The two comparisons that all sorters share.
#pragma once

#include "vosmere/base/wide_view.h"

namespace vosmere {

/// Compares without regard to ASCII case over the length of `a` alone; null counts as empty.
/// Intended: a text equals every text that it is the beginning of (ab, abc: 0), but not the other
/// way round (abc, ab: above 0). The order of sorted menus depends on it.
inline int CompareTextNoCase(const WChar* a, const WChar* b) {
  static const WChar empty[1] = {0};
  if (!a) return 0;
  if (!b) b = empty;
  for (; *a; ++a, ++b) {
    const int difference = FoldAscii(*a) - FoldAscii(*b);
    if (difference != 0) return difference;
  }
  return 0;
}

inline int CompareNumber(LONG a, LONG b) {
  return a > b ? 1 : a < b ? -1 : 0;
}

}  // namespace vosmere
