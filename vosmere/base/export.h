// VOSMERE_API marks what the shared library exports. On Linux everything else has hidden
// visibility.
#pragma once

#if defined(VOSMERE_STATIC)
#define VOSMERE_API
#elif defined(_WIN32)
#if defined(VOSMERE_BUILDING)
#define VOSMERE_API __declspec(dllexport)
#else
#define VOSMERE_API __declspec(dllimport)
#endif
#else
#define VOSMERE_API __attribute__((visibility("default")))
#endif
