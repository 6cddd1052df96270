// The order of siblings in a merged tree.
#pragma once

#include "vosmere/merge/internal/merge_table.h"

namespace vosmere {

/// The items in each item, in the merged order: that of the one side that has changed it, else that
/// of ours; what only the other side has comes right after what it follows there.
std::vector<std::vector<std::uint32_t>> DecideOrder(const MergeTable& table);

}  // namespace vosmere
