#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/text/write_file.h"

namespace vosmere {

/// Exports an item as a small HTML page: its name as title and heading, its description as the
/// body, and in small print when it was last modified (CBaseTool::GetPubDate).
///
/// Intended: the page is as bare as it has always been, and programs that take such pages back in
/// look for exactly this. It has no head element and no line breaks; name and description stand in
/// it as they are, without escaping, so that a description may bring markup of its own; it declares
/// "charset=unicode" though it is UTF-8; and it ends with another start tag in place of its end
/// tag.
class VOSMERE_API CWriteNoteHtml : public CWriteFile {
 public:
  CWriteNoteHtml() = default;
  ~CWriteNoteHtml() override;

  /// False only when the file cannot be created, which is so for a null path, and for a null item.
  /// Intended: what the disk had no room for is not reported; an export is looked at, not relied
  /// on. Throws std::bad_alloc when memory runs out; an old file is then left as it was.
  bool WriteToFile(CBaseNode* item, const WChar* path);
};

}  // namespace vosmere
