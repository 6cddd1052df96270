// Logged changes as notifications.
#pragma once

#include <memory>

#include "vosmere/notify/notify_msg.h"
#include "vosmere/storage/internal/stored_tree.h"

namespace vosmere {

using OwnedMessage = std::unique_ptr<CVSMNotifyMsg, void (*)(CVSMNotifyMsg*)>;

/// The notification for a change. Items that are still in the tree have their current names. Throws
/// std::bad_alloc.
OwnedMessage MessageOf(StoredTree& tree, ChangeKind kind, std::string_view bytes, bool undone);

}  // namespace vosmere
