// Exports an item as an HTML page.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/text/write_file.h"

namespace vosmere {

/// Exports an item as a small HTML page: its name as title and heading, its description as the
/// body, and the time of its last modification in small print, as CBaseTool::GetPubDate writes it.
///
/// Intended: the page has always had exactly this form, and programs that import such pages expect
/// it. There is no head element and no line break. Name and description are not escaped, so a
/// description may contain markup. The page declares "charset=unicode" although it is UTF-8, and it
/// ends with a second start tag instead of the end tag.
class VOSMERE_API CWriteNoteHtml : public CWriteFile {
 public:
  CWriteNoteHtml() = default;
  ~CWriteNoteHtml() override;

  /// Creates or truncates the file and writes the page. Returns false when the file cannot be
  /// created and for a null item or path. Throws std::bad_alloc when memory runs out; an existing
  /// file is not changed then.
  /// Intended: a failure to write, such as a full disk, is not returned, because nothing depends on
  /// an export. SystemError() has it.
  bool WriteToFile(CBaseNode* item, const WChar* path);
};

}  // namespace vosmere
