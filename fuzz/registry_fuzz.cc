// Any bytes are refused or read as a user's registry: a hive, a Wine prefix's or an exported one.
#include <string>

#include "fuzz/support.h"
#include "vosmere/base/internal/wide_string.h"
#include "vosmere/platform/internal/shell.h"
#include "vosmere/platform/registry.h"

using namespace vosmere;
using namespace vosmere::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  WriteScratch(View(data, size));
  static const std::u16string path(ScratchPath().begin(), ScratchPath().end());
  if (SetUserRegistry(Units(path))) {
    WChar folder[kShellPathLimit];
    FavoritesFolder(folder);
    const HKEY key = OpenUserKey(Units(u"Sub\\Key"));
    unsigned char bytes[64];
    ULONG room = sizeof bytes;
    Require(!ReadKeyValue(key, Units(u"v"), bytes, &room) || room <= sizeof bytes);
    CloseKey(key);
  }
  SetUserRegistry(nullptr);
  return 0;
}
