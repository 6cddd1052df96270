// What a saved or loaded document leaves out, as it is reported.
#pragma once

#include "vosmere/base/types.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// What becomes of something that a document has no place for, or its reader does not take.
enum class LossKind : LONG {
  kUnknown,   ///< an element or attribute that the reader does not know, or not there
  kNotKept,   ///< what the document or the item holds, and the other one does not
  kRepeated,  ///< of several one counts, and this is another
  kCut,       ///< a text that is too long
  kChanged,   ///< what comes out as something else
  kUnsaid,    ///< what the document does not say, and the reader makes up
};

/// One such thing. A plain value, whose texts are there during the report.
struct DocumentLoss {
  LossKind kind = LossKind::kNotKept;
  const char* what = "";          ///< for people: UTF-8, one line, no full stop
  const char* element = nullptr;  ///< of a load: the element by its path, as "/rss/channel/item[2]"
  LONG line = 0;                  ///< of a load, from 1; 0 where the platform does not know it
  LONG column = 0;                ///< in characters, from 1; 0 when unknown
  const CBaseNode* item = nullptr;  ///< of a save: the item, where it is one
  const WChar* name = nullptr;  ///< of a save: the item's name; null for the document as a whole
};

/// Is told of losses as they come up, with the `to` that was given along; throws nothing.
using LossReport = void (*)(void* to, const DocumentLoss& loss);

}  // namespace vosmere
