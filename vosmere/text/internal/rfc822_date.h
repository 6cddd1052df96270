// The dates that feeds are published with.
#pragma once

#include <string_view>

#include "vosmere/base/types.h"

namespace vosmere {

/// Formats them in the process's time zone (platform/internal/clock.h).
class PubDateFormat {
 public:
  /// Bytes that a date has at most.
  static constexpr int kDateRoom = 32;

  PubDateFormat();
  PubDateFormat(const PubDateFormat&) = delete;
  PubDateFormat& operator=(const PubDateFormat&) = delete;

  /// Writes "Mon, 01 Jan 2024 20:00:00" in local time, without a terminator, and returns its
  /// length; 0 for a time that the platform's calendar cannot convert.
  int Date(LONG seconds, char* date) const;

  /// "GMT", or hours and minutes as in "-0800".
  /// Intended: the sign is that of the seconds to add to reach UTC, so east of Greenwich is written
  /// with "-" and west with "+", against the usual convention. Readers of these dates apply it the
  /// same way round. Daylight saving never counts.
  std::string_view zone() const { return zone_; }

 private:
  char zone_[16];
};

}  // namespace vosmere
