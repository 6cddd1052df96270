// What a document holds, beside what comes back of it from a save.
#pragma once

#include <string_view>

#include "tools/check_findings.h"
#include "tools/document_content.h"

namespace vosmere::tool {

/// Reports the fields of `saved` that differ in `back`, another order of records of different
/// kinds, and the records that were left out. False, with nothing reported, when the two have not
/// the same number of records of each kind in the same places, but for those that a save leaves
/// out. `named` is the content with the very shape of `saved` that people know the records by, and
/// `what` its name as a whole.
bool Compare(const Record& saved, const Record& back, const Record& named, std::string_view what,
             Findings& findings);

/// Reports every value that breaks the saved document.
void ReportBreakers(const Record& content, std::string_view what, Findings& findings);

/// The character of a value that breaks the markup it is written into as it is; 0 for none.
char BreakerIn(std::string_view value);

}  // namespace vosmere::tool
