// The texts of a multipart/form-data body, in the old form and as RFC 7578 has it.
#pragma once

#include <string>

#include "vosmere/base/types.h"
#include "vosmere/net/internal/join.h"

namespace vosmere::multipart {

/// How a form is written. The old form names the whole local path as it is, parts the header's
/// parameters by a comma and leaves names unescaped; the clean one does as browsers do.
enum class Form { kOld, kClean };

// Null arguments are empty. The result is null without memory; std::bad_alloc, too, may be thrown.

JoinedText FileHead(Form form, const WChar* boundary, const WChar* field, const WChar* path);
JoinedText Field(Form form, const WChar* boundary, const WChar* name, const WChar* value);
JoinedText Tail(const WChar* boundary);

/// The header line, without its end. Throws std::bad_alloc.
std::string ContentType(Form form, const WChar* boundary);

}  // namespace vosmere::multipart
