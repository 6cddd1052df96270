// Values that break a saved tree: names, descriptions and addresses are written as they are.
#pragma once

#include "tools/findings.h"
#include "vosmere/nodes/tree_link.h"

namespace vosmere::tool {

/// Reports every value below `root` that breaks the saved document.
void ReportBreakers(RNode* root, Findings& findings);
/// Makes those values harmless.
void Disarm(RNode* root);

}  // namespace vosmere::tool
