// CFavorite: its list, and its order record.
#include "vosmere/favorites/favorite.h"

#include <new>

namespace vosmere {

CFavorite* CFavorite::New() {
  return new (std::nothrow) CFavorite;
}

void CFavorite::DeleteList(CFavorite* head) {
  while (head) {
    CFavorite* const next = head->next;
    delete head;
    head = next;
  }
}

int CFavorite::FindOccurence(const WChar* wanted, CFavorite** last) {
  for (CFavorite* favorite = this; favorite; favorite = favorite->next) {
    *last = favorite;
    if (SameTextNoCase(favorite->name, wanted)) return 1;
  }
  return 0;
}

COrderRecord* CFavorite::CreateOrderRecord() {
  auto* const record = new (std::nothrow) COrderRecord;
  if (record) orderRecord.Assign(record);
  return record;
}

}  // namespace vosmere
