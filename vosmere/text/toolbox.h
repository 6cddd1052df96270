// Small services that every part of the library uses: identities, publication dates, modifier keys.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// Static functions without state; may be called on any thread.
class VOSMERE_API CBaseTool {
 public:
  virtual ~CBaseTool();

  /// Writes a new UUID as 36 lower-case code units and a terminating null. Returns false, with
  /// `text` unchanged, when `capacity` is below 37 code units or the platform cannot generate a
  /// UUID.
  static bool GetUUID(WChar* text, int capacity);

  /// Gives `node` a new UUID as its identity. False when none can be generated; the old one is kept
  /// then.
  static bool AssignUUID(CBaseNode* node);

  /// Writes the publication date of a feed: RFC 822 form in local time, for example
  /// "Mon, 01 Jan 2024 20:00:00 -0800", cut after 39 code units. Returns false when `capacity` is
  /// below 40 code units; `text` is empty then (nothing is written if `capacity` is below 1). A
  /// time that the platform's calendar cannot convert gives the empty text and true.
  /// Intended: the sign of the zone is inverted: it is that of the seconds to add to get UTC, so a
  /// zone east of Greenwich is written with "-", one west of it with "+". CKQTime, which reads
  /// these dates, adds the offset and so undoes it. Offset 0 is written as "GMT". Daylight saving
  /// time is not included in the offset.
  static bool GetPubDate(LONG seconds, WChar* text, int capacity);

  /// The modifier keys that are held down: 0 none, 1 Shift, 2 Control, 3 Alt, 4 Shift and Control.
  /// Alt is reported only when neither of the others is held.
  static int GetModifyKeyState();

  /// Frees a byte buffer from CUnicodeTool or CReadFile::ReadToBuffer. Null is ignored. Not for
  /// system strings.
  static void Delete(void* buffer);
};

}  // namespace vosmere
