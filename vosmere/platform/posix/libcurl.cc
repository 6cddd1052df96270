// Loads libcurl.
#include "vosmere/platform/posix/libcurl.h"

#include <dlfcn.h>

namespace vosmere::posix {
namespace {

const Libcurl* Load() {
  void* const library = dlopen("libcurl.so.4", RTLD_NOW);
  if (!library) return nullptr;
  static Libcurl found;
#define VOSMERE_FIND(name)                                                            \
  found.name = reinterpret_cast<decltype(found.name)>(dlsym(library, "curl_" #name)); \
  if (!found.name) return nullptr;
  VOSMERE_LIBCURL(VOSMERE_FIND)
#undef VOSMERE_FIND
  return found.global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK ? &found : nullptr;
}

}  // namespace

const Libcurl* LoadLibcurl() {
  static const Libcurl* const loaded = Load();
  return loaded;
}

}  // namespace vosmere::posix
