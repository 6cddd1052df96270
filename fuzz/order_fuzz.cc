// Any bytes are read as the stored order of a menu, in either layout: from memory and from a
// registry with the same result.
#include <cstdio>
#include <string>
#include <vector>

#include "fuzz/support.h"
#include "vosmere/base/internal/wide_string.h"
#include "vosmere/favorites/favorites.h"
#include "vosmere/favorites/internal/order_value.h"

using namespace vosmere;
using namespace vosmere::fuzz;

namespace {

const WChar* const kFolder = Units(u"/no such folder");

/// A registry as the system exports it, with the value in one key.
void MakeRegistry(std::string_view value) {
  std::string text =
      "\xEF\xBB\xBFWindows Registry Editor Version "
      "5.00\r\n\r\n[HKEY_CURRENT_USER\\Menu]\r\n\"Order\"=hex:";
  for (const char byte : value) {
    char digits[8];
    std::snprintf(digits, sizeof digits, "%02x,", static_cast<unsigned char>(byte));
    text += digits;
  }
  WriteScratch(text + "\r\n");
  const std::u16string path(ScratchPath().begin(), ScratchPath().end());
  Require(SetUserRegistry(Units(path)));
}

/// The items of a list, which is freed, and its head.
std::u16string Shown(CFavorite* list, const COrderHead& head) {
  std::u16string all;
  for (CFavorite* item = list; item; item = item->next) {
    for (const WChar* at = item->name; *at; ++at) all += *at;
    all += u'\n';
  }
  for (const auto word : head.words) all += static_cast<char16_t>(word);
  CFavorite::DeleteList(list);
  return all;
}

void CheckOrder(CFavorites& favorites, const std::uint8_t* data, std::size_t size) {
  CFavorite *fromBuffer = nullptr, *fromKey = nullptr;
  COrderHead bufferHead, keyHead;
  const int bufferRead = favorites.ExtractFavoritesFromOrderBuffer(
      nullptr, nullptr, kFolder, &fromBuffer, &bufferHead, 0, data, static_cast<ULONG>(size));
  const int keyRead = favorites.ExtractFavorites(Units(u"Menu"), kFolder, &fromKey, &keyHead, 0);
  const std::u16string expected = Shown(fromBuffer, bufferHead);
  Require(Shown(fromKey, keyHead) == expected && keyRead == bufferRead);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  MakeRegistry(View(data, size));
  CFavorites favorites;
  for (const bool onXP : {false, true}) {
    favorites.SetRunningOnXP(onXP);
    CheckOrder(favorites, data, size);
  }
  OrderValue value(data, size);
  while (const auto record = value.Next()) record->LongName();
  return 0;
}
