// Formats the publication dates of feeds.
#pragma once

#include <string_view>

#include "vosmere/base/types.h"

namespace vosmere {

/// Formats dates in the process's time zone (platform/internal/clock.h). The constructor looks the
/// zone up, so one object can write many dates.
class PubDateFormat {
 public:
  /// The room that a date needs, in bytes.
  static constexpr int kDateRoom = 32;

  PubDateFormat();
  PubDateFormat(const PubDateFormat&) = delete;
  PubDateFormat& operator=(const PubDateFormat&) = delete;

  /// Writes "Mon, 01 Jan 2024 20:00:00" in local time, without a terminating null, and returns its
  /// length in bytes; 0 for a time that the platform's calendar cannot convert.
  int Date(LONG seconds, char* date) const;

  /// "GMT", or an offset in hours and minutes such as "-0800".
  /// Intended: the sign is inverted: it is that of the seconds to add to get UTC, so a zone east of
  /// Greenwich is written with "-", one west of it with "+". CKQTime, which reads these dates, adds
  /// the offset. Daylight saving time is not included.
  std::string_view zone() const { return zone_; }

 private:
  char zone_[16];
};

}  // namespace vosmere
