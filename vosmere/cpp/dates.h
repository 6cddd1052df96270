// Dates as std::chrono time points: reading those of feeds, the times of items, and date texts.
//
//   if (const auto date = ParseDate("Sun, 06 Nov 1994 08:49:37 GMT"))
//     SetTimes(page, {.added = date});
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "vosmere/base/owned_text.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/text.h"
#include "vosmere/text/date_reader.h"
#include "vosmere/text/display_date.h"
#include "vosmere/text/feed_date.h"
#include "vosmere/tree/base_node.h"

namespace vosmere {

using std::chrono::sys_seconds;

/// The time that a date text of a feed or a mail means, in any form that ReadDate reads
/// (text/date_reader.h); nullopt for a text that is not a date.
template <Utf8Text Text>
std::optional<sys_seconds> ParseDate(const Text& text) {
  const std::string_view utf8 = detail::ViewUtf8(text);
  DateReading date;
  if (!ReadDate(utf8.data(), utf8.size(), &date)) return std::nullopt;
  return sys_seconds(std::chrono::seconds(date.seconds));
}
inline std::optional<sys_seconds> ParseDate(TextView text) {
  DateReading date;
  if (!ReadDate(text.get(), &date)) return std::nullopt;
  return sys_seconds(std::chrono::seconds(date.seconds));
}
/// Throws std::bad_alloc.
template <Utf16Text Text>
std::optional<sys_seconds> ParseDate(const Text& text) {
  return ParseDate(TextView(Wide(text)));
}

// The library stores times as 32-bit seconds since 1970: from 1901-12-13 to 2038-01-19.

/// Nullopt for a time outside this range.
inline std::optional<std::int32_t> ToStoredTime(sys_seconds time) {
  const auto seconds = time.time_since_epoch().count();
  if (seconds < INT32_MIN || seconds > INT32_MAX) return std::nullopt;
  return static_cast<std::int32_t>(seconds);
}
inline sys_seconds FromStoredTime(std::int32_t seconds) {
  return sys_seconds(std::chrono::seconds(seconds));
}

// Date texts; nullopt for a time that the library cannot format. Each may throw std::bad_alloc.

/// "2008-03-01T10:20:30Z", from 1970 on.
inline std::optional<std::string> ToIsoDate(sys_seconds time) {
  const auto stored = ToStoredTime(time);
  char text[26];
  if (!stored || !CKQTime().GetDCDate(*stored, text)) return std::nullopt;
  return text;
}
/// "Mar 01 2008 14:05 Sat", in local time.
inline std::optional<std::string> ToDisplayDate(sys_seconds time) {
  const auto stored = ToStoredTime(time);
  if (!stored) return std::nullopt;
  const SystemString text(DisplayDate::GetShowDate2(*stored));
  if (!text) detail::ThrowNoMemory();
  return *text ? std::optional(ToUtf8(text.get())) : std::nullopt;
}

/// The times of an item. For SetTimes, those without a value are not set.
struct ItemTimes {
  std::optional<sys_seconds> added = {}, modified = {}, lastVisited = {};
};

/// All three times of an item.
inline ItemTimes TimesOf(const CBaseNode& item) {
  std::int32_t added, modified, lastVisited;
  item.GetNodeStat()->GetStatTime(&added, &modified, &lastVisited);
  return {FromStoredTime(added), FromStoredTime(modified), FromStoredTime(lastVisited)};
}
/// Sets the times that have a value. Returns false if one of them is out of range; none is set
/// then.
inline bool SetTimes(CBaseNode& item, const ItemTimes& times) {
  const struct {
    std::optional<sys_seconds> time;
    ULONG bit;
  } given[] = {{times.added, CNodeStat::kAdded},
               {times.modified, CNodeStat::kModified},
               {times.lastVisited, CNodeStat::kLastVisited}};
  std::int32_t stored[3] = {};
  ULONG mask = 0;
  for (int i = 0; i < 3; ++i) {
    if (!given[i].time) continue;
    const auto seconds = ToStoredTime(*given[i].time);
    if (!seconds) return false;
    stored[i] = *seconds;
    mask |= given[i].bit;
  }
  item.GetNodeStat()->SetStatTime(stored[0], stored[1], stored[2], mask);
  return true;
}

}  // namespace vosmere
