#include "vosmere/xml/reader_fields.h"

#include "vosmere/base/internal/number.h"

namespace vosmere::xml {

LONG NumberFromText(const WChar* text) {
  LONG number;
  ReadNumber<WChar>(text, nullptr, &number);
  return number;
}

}  // namespace vosmere::xml
