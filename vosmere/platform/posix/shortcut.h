// Internet shortcut files, which Windows keeps in the form of its initialisation files.
#pragma once

#include <string>

namespace vosmere {

/// The address in a shortcut's bytes, empty for none: the `URL` of the section [InternetShortcut],
/// or its shadow in [InternetShortcut.W], which is UTF-7 (RFC 2152) and says what the 8-bit one
/// cannot. An address outside of these sections counts no more than with Windows. Names are found
/// without regard to ASCII case, the first one counts, and lines end in CR, LF or both. Throws
/// std::bad_alloc.
std::u16string ShortcutAddressIn(std::string bytes);

}  // namespace vosmere
