// Any bytes are read as the stored order of a menu, in either layout.
#include <cstddef>
#include <cstdint>

#include "vosmere/base/internal/wide_string.h"
#include "vosmere/favorites/favorites.h"
#include "vosmere/favorites/internal/order_value.h"

using namespace vosmere;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CFavorites favorites;
  for (const bool onXP : {false, true}) {
    CFavorite* list = nullptr;
    COrderHead head;
    favorites.SetRunningOnXP(onXP);
    favorites.ExtractFavoritesFromOrderBuffer(nullptr, nullptr, Units(u"/no such folder"), &list,
                                              &head, 0, data, static_cast<ULONG>(size));
    CFavorite::DeleteList(list);
  }
  OrderValue value(data, size);
  while (const auto record = value.Next()) record->LongName();
  return 0;
}
