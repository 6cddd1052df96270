// What an OPML file holds and the tree that is loaded from it does not.
#pragma once

#include "tools/findings.h"
#include "vosmere/base/types.h"

namespace vosmere::tool {

/// `path` is a file that loads.
void AuditOpml(const WChar* path, Findings& findings);

}  // namespace vosmere::tool
