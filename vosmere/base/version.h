// The version of the headers for the preprocessor. The build takes every other version from here.
#pragma once

// NOLINTBEGIN(modernize-macro-to-enum): the preprocessor and the resource compiler read them.
#define VOSMERE_VERSION_MAJOR 1
#define VOSMERE_VERSION_MINOR 0
#define VOSMERE_VERSION_PATCH 0
// NOLINTEND(modernize-macro-to-enum)

/// One number, to be compared: `#if VOSMERE_VERSION >= 110` asks for 1.1.0. kBuildNumber is the
/// same for the library that the program has found when it was started.
#define VOSMERE_VERSION \
  (VOSMERE_VERSION_MAJOR * 100 + VOSMERE_VERSION_MINOR * 10 + VOSMERE_VERSION_PATCH)

#define VOSMERE_DETAIL_TEXT(number) #number
#define VOSMERE_DETAIL_DOTTED(major, minor, patch) \
  VOSMERE_DETAIL_TEXT(major) "." VOSMERE_DETAIL_TEXT(minor) "." VOSMERE_DETAIL_TEXT(patch)
/// "1.0.0"
#define VOSMERE_VERSION_TEXT \
  VOSMERE_DETAIL_DOTTED(VOSMERE_VERSION_MAJOR, VOSMERE_VERSION_MINOR, VOSMERE_VERSION_PATCH)
