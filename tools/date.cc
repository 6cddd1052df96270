// The verb "date".
#include "tools/date.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iostream>

#include "tools/document_content.h"
#include "tools/failure.h"
#include "tools/text.h"
#include "vosmere/text/date_reader.h"
#include "vosmere/text/feed_date.h"

namespace vosmere::tool {

std::string TimeText(std::int64_t seconds) {
  using namespace std::chrono;
  const sys_seconds time{std::chrono::seconds(seconds)};
  const year_month_day date(floor<days>(time));
  const hh_mm_ss clock(time - floor<days>(time));
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()));
  return text;
}

namespace {

/// "1994-11-06T08:49:37Z    784111777"
std::string Instant(std::int64_t seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "  %11lld", static_cast<long long>(seconds));
  return TimeText(seconds) + text;
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

void ShowLines(const std::string& text, const LONG* seconds, const DateReading* date,
               std::ostream& out) {
  out << Printable(text) << '\n';
  out << "  GetTime   "
      << (seconds ? "found      " + Instant(*seconds)
                  : "not found  " + Instant(std::time(nullptr)) + "  (now)");
  out << "\n  ReadDate  ";
  if (date)
    out << "found      " << Instant(date->seconds) << "  zone " << Offset(*date) << ", "
        << NameOf(date->form) << '\n';
  else
    out << "not found\n";
}

void ShowJson(const std::string& text, const LONG* seconds, const DateReading* date,
              std::ostream& out) {
  Json json = {{"text", ToUtf8(Wide(text))}, {"getTime", nullptr}, {"readDate", nullptr}};
  if (seconds) json["getTime"] = {{"seconds", *seconds}, {"time", TimeText(*seconds)}};
  if (date)
    json["readDate"] = {{"seconds", date->seconds},
                        {"time", TimeText(date->seconds)},
                        {"offsetMinutes", date->zoneKnown ? Json(date->offsetMinutes) : Json()},
                        {"form", NameOf(date->form)}};
  out << JsonText(json) << '\n';
}

/// Returns false if ReadDate finds no date.
bool ShowDate(const std::string& text, bool asJson, std::ostream& out) {
  LONG seconds;
  const bool found = CKQTime().GetTime(text.c_str(), &seconds);
  DateReading date;
  const bool isRead = ReadDate(text.data(), text.size(), &date);
  (asJson ? ShowJson : ShowLines)(text, found ? &seconds : nullptr, isRead ? &date : nullptr, out);
  return isRead;
}

}  // namespace

int ShowDates(const std::vector<std::string>& texts, bool asJson, std::ostream& out) {
  int exitCode = kFine;
  const auto show = [&](const std::string& text) {
    if (!ShowDate(text, asJson, out)) exitCode = kBadFile;
  };
  for (const std::string& text : texts) {
    if (!IsStandard(text)) {
      show(text);
      continue;
    }
    for (std::string line; std::getline(std::cin, line);) {
      if (!line.empty() && line.back() == '\r') line.pop_back();
      show(line);
    }
  }
  return exitCode;
}

}  // namespace vosmere::tool
