// Any bytes are refused or read as a user's registry: a hive, a Wine prefix's or an exported one.
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "vosmere/base/internal/wide_string.h"
#include "vosmere/platform/internal/shell.h"
#include "vosmere/platform/registry.h"

using namespace vosmere;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path file =
      std::filesystem::temp_directory_path() /
      ("registry_fuzz" + std::to_string(reinterpret_cast<std::uintptr_t>(&file)));
  std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(data), size);
  if (SetUserRegistry(Units(file.u16string()))) {
    WChar folder[kShellPathLimit];
    FavoritesFolder(folder);
    const HKEY key = OpenUserKey(Units(u"Sub\\Key"));
    unsigned char bytes[64];
    ULONG room = sizeof bytes;
    ReadKeyValue(key, Units(u"v"), bytes, &room);
    CloseKey(key);
  }
  SetUserRegistry(nullptr);
  return 0;
}
