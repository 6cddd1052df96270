// System strings (`BSTR`): zero-terminated UTF-16 with its length in bytes in the four bytes
// before. On Windows these are the system's own, so a text may be freed with either.
#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// A copy of a zero-terminated text, which the caller frees. Null for null or without memory.
VOSMERE_API BSTR SysAllocString(const WChar* text);

/// A string of `length` units, copied from `text`; with a null `text` the units are uninitialised.
/// A zero unit always follows. Null without memory or when the length does not fit the prefix.
VOSMERE_API BSTR SysAllocStringLen(const WChar* text, std::size_t length);

/// Replaces `*string` by a copy of `text`, which may lie within it. False, with `*string`
/// unchanged, without memory; 1 else.
VOSMERE_API int SysReAllocString(BSTR* string, const WChar* text);

/// Length in units, from the prefix; 0 for null.
VOSMERE_API unsigned SysStringLen(const WChar* string);

/// Null is ignored.
VOSMERE_API void SysFreeString(BSTR string);

}  // namespace vosmere
