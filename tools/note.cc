#include "tools/note.h"

#include "tools/document.h"
#include "tools/kinds/items.h"
#include "tools/replace_file.h"
#include "tools/text.h"
#include "vosmere/docs/note_html.h"

namespace vosmere::tool {

int Note(const NoteOptions& options) {
  const Document document(options.in);
  CBaseNode* const item = document.Find([&](const CBaseNode& candidate) {
    return !options.item.empty() && (TextOf(candidate.GetName()) == options.item ||
                                     TextOf(candidate.GetUUID()) == options.item);
  });
  if (!item)
    throw Failure{kBadFile, Printable(options.in) + ": error: no item has the name or identity '" +
                                Printable(options.item) + "'"};
  ReplaceFile(options.out, [&](const WChar* path) {
    if (!CWriteNoteHtml().WriteToFile(item, path))
      throw Failure{kTrouble, Printable(options.out) + ": error: cannot be written"};
  });
  return kFine;
}

}  // namespace vosmere::tool
