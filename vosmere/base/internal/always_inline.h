// VOSMERE_ALWAYS_INLINE, for small functions that compilers would rather call.
#pragma once

#if defined(_MSC_VER)
#define VOSMERE_ALWAYS_INLINE __forceinline
#else
#define VOSMERE_ALWAYS_INLINE [[gnu::always_inline]] inline
#endif
