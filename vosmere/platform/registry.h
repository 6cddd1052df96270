// Read access to the registry of the current user.
//
// On Windows it is the system's registry. On other systems it is read from a file that contains a
// registry, see SetUserRegistry. A failure for lack of memory looks like a missing key or value,
// but LostTexts counts it (owned_text.h).
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

// The tag that Windows uses for HKEY, so that a program can pass a key that it has opened itself.
struct HKEY__;

namespace vosmere {

/// An open registry key. Not thread-safe.
using HKEY = ::HKEY__*;

/// Chooses the file that is read as HKEY_CURRENT_USER on systems without a registry: a Windows
/// profile's "NTUSER.DAT", a Wine prefix (its folder, or the "user.reg" in it), or a file exported
/// from a registry (".reg", UTF-16 or 8-bit). The kind is detected from the content. Null restores
/// the default: the Wine prefix in the environment variable WINEPREFIX, or else ".wine" in the home
/// folder.
///
/// Returns false and changes nothing when the file cannot be read, is of none of these kinds, is
/// damaged, is larger than 256 MiB or has more than a million keys. On Windows the result is false
/// for everything but null. Thread-safe.
///
/// The file is read again whenever a key is opened with OpenUserKey, so later changes to it are
/// seen. Names of keys and values are case-insensitive (ASCII).
VOSMERE_API bool SetUserRegistry(const WChar* path);

/// Opens a key under HKEY_CURRENT_USER for reading, for example "Software\Microsoft". The caller
/// closes it with CloseKey. Null when it does not exist or cannot be opened.
VOSMERE_API HKEY OpenUserKey(const WChar* path);
/// Opens a key below `parent`, from the same reading of the file; the parent may be closed before
/// it. The caller closes it with CloseKey. Null when `parent` is null, and when the key does not
/// exist or cannot be opened.
VOSMERE_API HKEY OpenSubKey(HKEY parent, const WChar* path);
/// Closes a key. Null is ignored.
VOSMERE_API void CloseKey(HKEY key);

/// Reads a value of any type as bytes. `*size` is the capacity of `bytes`, and receives the size of
/// the value. With null `bytes` only the size is stored. False, with an unchanged `*size`, when the
/// key is null, the value does not exist, or it does not fit.
VOSMERE_API bool ReadKeyValue(HKEY key, const WChar* name, void* bytes, ULONG* size);

}  // namespace vosmere
