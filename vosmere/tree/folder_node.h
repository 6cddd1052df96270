// Folders.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/tree/base_node.h"

namespace vosmere {

/// A folder. Its contents are the children of its link, which has the type NT_FOLDER.
class VOSMERE_API CFolderNode : public CBaseNode {
 public:
  /// A new folder with an empty name; null when memory runs out. Freed with Delete.
  static CFolderNode* New();
  /// A copy of everything but the link and the children; null when memory runs out.
  static CFolderNode* New(CFolderNode* source);

  ~CFolderNode() override;

 protected:
  CFolderNode() = default;
  explicit CFolderNode(const CFolderNode* source) : CBaseNode(source) {}
};

}  // namespace vosmere
