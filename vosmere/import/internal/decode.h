// Turns the bytes of a document into UTF-8 text, whatever its encoding is.
#pragma once

#include <string>
#include <string_view>

#include "vosmere/import/internal/repair_list.h"

namespace vosmere::importing {

/// The name of the encoding that a document in an 8-bit encoding declares, in XML or HTML; empty if
/// it declares none.
std::string_view DeclaredEncoding(std::string_view bytes);

/// Whether the beginning of a document is that of UTF-16, with a byte-order mark or without.
bool IsUtf16(std::string_view bytes);

/// Whether the bytes are well-formed UTF-8. `*hasLetters` receives whether any is beyond ASCII.
bool IsUtf8(std::string_view bytes, bool* hasLetters);

/// Converts a document to UTF-8 without a byte-order mark:
/// - A byte-order mark, or the zero bytes of UTF-16, decide before the declaration.
/// - Well-formed UTF-8 is read as such, whatever the declaration says.
/// - Otherwise the declared encoding is used, if the platform knows it. Bytes that are not valid in
///   UTF-8, or in a document without a known encoding, are read as windows-1252, in which every
///   byte but five is a character; each of those five becomes U+FFFD.
/// - Zero bytes at the end are cut off, other control characters become blanks.
std::string Decode(std::string_view bytes, RepairList& repairs);

}  // namespace vosmere::importing
