// A quick look at the namespace prefixes of a document.
#pragma once

#include <string_view>

namespace vosmere::importing {

/// Whether a document in an 8-bit encoding uses a prefix that it does not declare. Not every
/// platform's parser objects to that. May also be true when text looks like a prefix.
bool MayLackPrefix(std::string_view bytes);

}  // namespace vosmere::importing
