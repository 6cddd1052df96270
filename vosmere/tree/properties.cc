// A record of name, description and address.
#include "vosmere/tree/properties.h"

namespace vosmere {

CProperties::~CProperties() = default;

bool CProperties::IsEmpty() const {
  if (!name_.get() && !url_.get() && !extra_.get()) return true;
  return description_.get() && *description_.get();
}

}  // namespace vosmere
