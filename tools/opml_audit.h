// What an OPML file holds and the tree that is loaded from it does not.
#pragma once

#include "tools/findings.h"
#include "vosmere/base/types.h"
#include "vosmere/xml/document_error.h"

namespace vosmere::tool {

/// `path` is a file that loads; says why when it does not do so again.
DocumentError AuditOpml(const WChar* path, Findings& findings);

}  // namespace vosmere::tool
