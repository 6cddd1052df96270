// The registry of the current user, as far as the library reads it.
//
// On Windows it is the system's. Elsewhere the same data comes from a file that holds it, chosen by
// SetUserRegistry. What fails for want of memory looks like what is not there, but is counted by
// LostTexts (owned_text.h).
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

// Windows' own tag, so that a key that a program has opened there can be handed over.
struct HKEY__;

namespace vosmere {

/// An open registry key. One thread at a time.
using HKEY = ::HKEY__*;

/// Chooses what stands for HKEY_CURRENT_USER where the system has no registry: a Windows profile's
/// "NTUSER.DAT", a Wine prefix (the folder, or the "user.reg" in it), or a file that was exported
/// from a registry (".reg", UTF-16 or 8-bit); the content decides which. Null restores the default:
/// the Wine prefix named by the environment variable WINEPREFIX, else ".wine" in the home folder.
/// False, with nothing changed, when the file cannot be read, is of none of these kinds, is
/// damaged, is larger than 256 MiB or has more than a million keys; on Windows for everything but
/// null. Any thread.
///
/// The file is read whenever a key is opened, so what was written to it meanwhile counts. Keys and
/// values are found without regard to ASCII case.
VOSMERE_API bool SetUserRegistry(const WChar* path);

/// Opens a key under HKEY_CURRENT_USER for reading, "Software\Microsoft" for example. Null when
/// there is none, or it cannot be opened.
VOSMERE_API HKEY OpenUserKey(const WChar* path);
/// Opens a key below `parent`, from the same reading of the registry. Null for a null parent.
VOSMERE_API HKEY OpenSubKey(HKEY parent, const WChar* path);
/// Null is ignored.
VOSMERE_API void CloseKey(HKEY key);

/// Reads a value of any type as bytes: `*size` is the room in `bytes`, and then the value's size.
/// With null `bytes` only the size is told. False when the key is null, there is no such value, or
/// it is larger than the room.
VOSMERE_API bool ReadKeyValue(HKEY key, const WChar* name, void* bytes, ULONG* size);

}  // namespace vosmere
