// The verb "date".
#include "tools/date.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "tools/text.h"
#include "vosmere/text/date_reader.h"
#include "vosmere/text/feed_date.h"

namespace vosmere::tool {
namespace {

/// "1994-11-06T08:49:37Z   784111777"
std::string Instant(std::int64_t seconds) {
  using namespace std::chrono;
  const sys_seconds time{std::chrono::seconds(seconds)};
  const year_month_day date(floor<days>(time));
  const hh_mm_ss clock(time - floor<days>(time));
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ  %11lld",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()), static_cast<long long>(seconds));
  return text;
}

std::string Offset(const DateReading& date) {
  if (!date.zoneKnown) return "unknown";
  const int minutes = std::abs(date.offsetMinutes);
  char text[16];
  std::snprintf(text, sizeof text, "%c%02d:%02d", date.offsetMinutes < 0 ? '-' : '+', minutes / 60,
                minutes % 60);
  return text;
}

const char* NameOf(DateForm form) {
  switch (form) {
    case DateForm::kRfc822: return "RFC 822";
    case DateForm::kIso8601: return "ISO 8601";
    case DateForm::kLoose: return "loose";
    case DateForm::kMonthFirst: return "month first";
  }
  return "";
}

}  // namespace

bool ShowDate(const std::string& text, std::ostream& out) {
  out << Printable(text) << '\n';
  LONG seconds;
  const bool found = CKQTime().GetTime(text.c_str(), &seconds);
  out << "  GetTime   " << (found ? "found      " : "not found  ") << Instant(seconds)
      << (found ? "\n" : "  (now)\n");

  DateReading date;
  if (!ReadDate(text.data(), text.size(), &date)) {
    out << "  ReadDate  not found\n";
    return false;
  }
  out << "  ReadDate  found      " << Instant(date.seconds) << "  zone " << Offset(date) << ", "
      << NameOf(date.form) << '\n';
  return true;
}

}  // namespace vosmere::tool
