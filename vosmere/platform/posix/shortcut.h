// Reads Internet shortcut files, which have the format of Windows' initialisation files.
#pragma once

#include <string>

namespace vosmere {

/// Returns the address in the bytes of a shortcut file; empty when there is none. It is the `URL`
/// of the section [InternetShortcut], or of [InternetShortcut.W] if that exists, which is in UTF-7
/// (RFC 2152) and holds characters that the 8-bit one cannot. As on Windows, a `URL` outside of
/// these sections is ignored. Names are case-insensitive (ASCII), the first match counts, and lines
/// end in CR, LF or both. Throws std::bad_alloc.
std::u16string ShortcutAddressIn(std::string bytes);

}  // namespace vosmere
