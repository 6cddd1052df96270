// Logged changes as notifications.
#pragma once

#include <memory>

#include "vosmere/notify/notify_msg.h"
#include "vosmere/storage/internal/stored_tree.h"

namespace vosmere {

using OwnedMessage = std::unique_ptr<CVSMNotifyMsg, void (*)(CVSMNotifyMsg*)>;

/// What a change comes to, as a notification. Items that are still in the tree are named as they
/// are now. Throws std::bad_alloc.
OwnedMessage MessageOf(StoredTree& tree, ChangeKind kind, std::string_view bytes, bool undone);

}  // namespace vosmere
