// libcurl, loaded by the first request: it brings some forty libraries with it, and loading them
// takes longer than all else that a program does to start that only reads and saves lists.
#pragma once

#include <curl/curl.h>

namespace vosmere::posix {

/// Calls F(name) for each function of libcurl that is used, without "curl_".
// clang-format off
#define VOSMERE_LIBCURL(F)                                                                  \
  F(easy_cleanup) F(easy_getinfo) F(easy_init) F(easy_pause) F(easy_setopt) F(global_init)  \
  F(multi_add_handle) F(multi_cleanup) F(multi_info_read) F(multi_init) F(multi_perform)    \
  F(multi_poll) F(multi_remove_handle) F(slist_append) F(slist_free_all) F(strnequal)
// clang-format on

struct Libcurl {
#define VOSMERE_MEMBER(name) decltype(&curl_##name) name;
  VOSMERE_LIBCURL(VOSMERE_MEMBER)
#undef VOSMERE_MEMBER
};

/// Loads and initializes libcurl at the first call; null if it is not there or does not start. Any
/// thread may call it. It stays loaded.
const Libcurl* LoadLibcurl();

/// libcurl once it is loaded.
inline const Libcurl& curl() {
  return *LoadLibcurl();
}

}  // namespace vosmere::posix
