// What loading or saving a document does not preserve.
#pragma once

#include "vosmere/base/types.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// What happens to data that a document cannot hold, or that its reader does not keep.
enum class LossKind : LONG {
  kUnknown,   ///< an element or attribute that the reader does not know at this place
  kNotKept,   ///< data of the document or the item that the other one does not hold
  kRepeated,  ///< only one of several elements or attributes is kept, and this is another one
  kCut,       ///< a text that is too long
  kChanged,   ///< a value that becomes another one
  kUnsaid,    ///< a value that the document does not have, so the reader makes it up
};

/// One loss. A plain value; its texts are valid during the report.
struct DocumentLoss {
  LossKind kind = LossKind::kNotKept;
  const char* what = "";          ///< a message for the user: UTF-8, one line, without a full stop
  const char* element = nullptr;  ///< when loading: the element by its path, "/rss/channel/item[2]"
  LONG line = 0;                  ///< when loading, from 1; 0 if the platform does not know it
  LONG column = 0;                ///< in characters, from 1; 0 when unknown
  const CBaseNode* item = nullptr;  ///< when saving: the item, if the loss is about one
  const WChar* name = nullptr;  ///< when saving: the item's name; null for the document as a whole
};

/// Called for each loss, with the `to` that was set together with the function. Must not throw.
using LossReport = void (*)(void* to, const DocumentLoss& loss);

}  // namespace vosmere
