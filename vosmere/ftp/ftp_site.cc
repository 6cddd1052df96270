// FTP sites and their web addresses.
#include "vosmere/ftp/ftp_site.h"

#include <new>

#include "vosmere/base/chain.h"
#include "vosmere/base/internal/no_memory.h"

namespace vosmere {

CFtpWebAddress::~CFtpWebAddress() {
  for (Cell* cell : chain::Cells(head_)) delete cell;
}

bool CFtpWebAddress::Add(const WChar* name, const WChar* link) {
  Cell* const cell = NullIfNoMemory([=] { return new Cell(name, link); });
  if (cell) chain::Append(head_, cell);
  return cell != nullptr;
}

CFtpConBase::~CFtpConBase() = default;

CFtpConBase* CFtpConBase::New() {
  return new (std::nothrow) CFtpConBase;
}

void CFtpConBase::Delete(CFtpConBase* site) {
  delete site;
}

}  // namespace vosmere
