// Numbers in attributes and texts.
#include "vosmere/xml/reader_fields.h"

#include <cstdio>
#include <string_view>

#include "vosmere/base/internal/number.h"

namespace vosmere::xml {

bool FitsNumber(const WChar* text) {
  char digits[16];
  const int length =
      std::snprintf(digits, sizeof digits, "%ld", static_cast<long>(NumberFromText(text)));
  return IsNamed(WideView(text), std::string_view(digits, static_cast<std::size_t>(length)));
}

LONG NumberFromText(const WChar* text) {
  LONG number;
  ReadNumber<WChar>(text, nullptr, &number);
  return number;
}

}  // namespace vosmere::xml
