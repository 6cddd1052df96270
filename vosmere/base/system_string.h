// System strings (`BSTR`): null-terminated UTF-16 with the length in bytes in the four bytes before
// the text. On Windows these are the system's own functions, so a string from here may be freed
// with the system's SysFreeString and the other way round.
#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// A copy of a null-terminated text; the caller frees it with SysFreeString. Null for null, and
/// when memory runs out.
VOSMERE_API BSTR SysAllocString(const WChar* text);

/// A string of `length` code units, copied from `text`; if `text` is null, the code units are not
/// initialised. A terminating null is added, which the length does not count. The caller frees it
/// with SysFreeString. Null when memory runs out, and when the length in bytes does not fit into 32
/// bits.
VOSMERE_API BSTR SysAllocStringLen(const WChar* text, std::size_t length);

/// Frees `*string` and replaces it with a copy of `text`, which may be a part of it. A null `text`
/// makes it null. Returns 1; 0 when memory runs out, with `*string` unchanged.
VOSMERE_API int SysReAllocString(BSTR* string, const WChar* text);

/// The length in code units, read from the prefix, so nulls within the text count. 0 for null.
/// Undefined for a text that is not a system string.
VOSMERE_API unsigned SysStringLen(const WChar* string);

/// Frees a system string. Null is ignored.
VOSMERE_API void SysFreeString(BSTR string);

}  // namespace vosmere
