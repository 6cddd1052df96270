// The texts of a multipart/form-data body, in the old form and as RFC 7578 defines it.
#pragma once

#include <string>

#include "vosmere/base/types.h"
#include "vosmere/net/internal/join.h"

namespace vosmere::multipart {

/// How a form is written. The old form sends the whole local path, separates the parameters of the
/// Content-Type header with a comma and does not escape names. The clean form is that of browsers.
enum class Form { kOld, kClean };

// Null arguments are empty. When memory runs out, the result is null, or std::bad_alloc is thrown.

/// The part header before the file's bytes.
JoinedText FileHead(Form form, const WChar* boundary, const WChar* field, const WChar* path);
/// A part with one form field.
JoinedText Field(Form form, const WChar* boundary, const WChar* name, const WChar* value);
/// The closing delimiter.
JoinedText Tail(const WChar* boundary);

/// The Content-Type header line of the request, without its line end. Throws std::bad_alloc.
std::string ContentType(Form form, const WChar* boundary);

}  // namespace vosmere::multipart
