#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// Small services that every module needs. Stateless; any thread.
class VOSMERE_API CBaseTool {
 public:
  virtual ~CBaseTool();

  /// A new UUID as 36 lower-case units and a zero unit. False, with `text` unchanged, when
  /// `capacity` is below 37 units, and if ever the platform has no UUID to give.
  static bool GetUUID(WChar* text, int capacity);

  /// Gives the item a new identity. False leaves the one it has.
  static bool AssignUUID(CBaseNode* node);

  /// The publication date of a feed (RFC 822 form, local time), for example
  /// "Mon, 01 Jan 2024 20:00:00 -0800", cut to 39 units. False, with an empty text, when `capacity`
  /// is below 40 units (nothing at all is written below 1). A time that the platform's calendar
  /// cannot convert gives an empty text.
  /// Intended: the zone's sign is that of the seconds to add to reach UTC, so east of Greenwich is
  /// written with "-" and west with "+", against the usual convention. Readers of these dates apply
  /// it the same way round. Offset 0 is written as "GMT"; daylight saving never counts in the
  /// offset.
  static bool GetPubDate(LONG seconds, WChar* text, int capacity);

  /// The modifier keys held now: 0 none, 1 Shift, 2 Control, 3 Alt alone, 4 Shift and Control (Alt
  /// counts only when neither of the others is held).
  static int GetModifyKeyState();

  /// Frees a buffer that the library handed out. Null is ignored.
  static void Delete(void* buffer);
};

}  // namespace vosmere
