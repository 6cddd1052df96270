// VOSMERE_API marks what the shared library exports. On Linux everything else has hidden
// visibility.
#pragma once

// The calling convention of functions that the system calls on a thread of its own.
#if defined(_WIN32)
#define VOSMERE_THREAD_CALL __stdcall
#else
#define VOSMERE_THREAD_CALL
#endif

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
