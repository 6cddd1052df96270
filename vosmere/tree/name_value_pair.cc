// Name/value pairs; cells are linked by base/chain.h.
#include "vosmere/tree/name_value_pair.h"

#include "vosmere/base/chain.h"

namespace vosmere {

CNameValuePair::~CNameValuePair() = default;

CNameValuePair* CNameValuePair::New() {
  return new (std::nothrow) CNameValuePair;
}

void CNameValuePair::Delete(CNameValuePair* pair) {
  delete pair;
}

void CNameValuePair::DeleteList(CNameValuePair* head) {
  for (CNameValuePair* pair : chain::Cells(head)) Delete(pair);
}

WChar* CNameValuePair::FindValue(CNameValuePair* head, const WChar* name) {
  CNameValuePair* const found = chain::Find(head, [name](CNameValuePair* pair) {
    return name && pair->GetName() && SameTextNoCase(pair->GetName(), name);
  });
  return found ? found->GetValue() : nullptr;
}

}  // namespace vosmere
