// Values that break a saved tree: names, descriptions and addresses are written as they are.
#pragma once

#include "tools/findings.h"
#include "vosmere/nodes/tree_link.h"

namespace vosmere::tool {

/// Reports every value below `root` that breaks the saved document, and makes it harmless, so that
/// the other losses can be seen.
void ReportAndDisarm(RNode* root, Findings& findings);

}  // namespace vosmere::tool
