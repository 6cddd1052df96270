#include "vosmere/xml/reader_fields.h"

#include <cstdint>
#include <limits>

namespace vosmere {

LONG NumberFromText(const WChar* text) {
  while (*text == ' ' || (*text >= '\t' && *text <= '\r')) ++text;
  const bool negative = *text == '-';
  if (*text == '-' || *text == '+') ++text;
  constexpr std::int64_t kLimit = std::numeric_limits<LONG>::max();
  std::int64_t magnitude = 0;
  for (; *text >= '0' && *text <= '9'; ++text)
    if (magnitude <= kLimit) magnitude = magnitude * 10 + (*text - '0');
  if (negative) return static_cast<LONG>(-(magnitude > kLimit ? kLimit + 1 : magnitude));
  return static_cast<LONG>(magnitude > kLimit ? kLimit : magnitude);
}

}  // namespace vosmere
