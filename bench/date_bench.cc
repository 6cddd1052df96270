// Benchmarks of reading feed dates, compared with libcurl's date parser and GLib's ISO parser. Each
// iteration reads another text.
#include <benchmark/benchmark.h>
#include <curl/curl.h>
#include <glib.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "vosmere/text/date_reader.h"
#include "vosmere/text/feed_date.h"
#include "vosmere/text/toolbox.h"

namespace vosmere::bench {
namespace {

constexpr std::size_t kTexts = 1000;
constexpr std::size_t kItems = 20;  // in one feed

/// Dates from 1995 to 2034, as in fifty feeds of twenty items: all dates of a feed have one zone.
template <class Print>
std::vector<std::string> MakeTexts(Print print) {
  std::minstd_rand random(1);
  const auto below = [&](int limit) { return static_cast<int>((random() >> 8) % limit); };
  std::vector<std::string> texts;
  int zone = 0;
  while (texts.size() < kTexts) {
    if (texts.size() % kItems == 0) zone = below(8);
    char text[64];
    const int year = 1995 + below(40), month = below(12), day = 1 + below(28);
    const int hour = below(24), minute = below(60), second = below(60);
    print(text, year, month, day, hour, minute, second, zone);
    texts.emplace_back(text);
  }
  return texts;
}

void PrintMailDate(char (&text)[64], int year, int month, int day, int hour, int minute, int second,
                   int zone) {
  constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                     "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  constexpr const char* kZones[] = {"GMT", "+0000", "GMT", "+0000", "-0500", "+0200", "EST", "PDT"};
  std::snprintf(text, sizeof text, "%s, %02d %s %d %02d:%02d:%02d %s", kDays[(day + month) % 7],
                day, kMonths[month], year, hour, minute, second, kZones[zone]);
}

void PrintIsoDate(char (&text)[64], int year, int month, int day, int hour, int minute, int second,
                  int zone) {
  constexpr const char* kZones[] = {"Z", "Z", "Z", "+00:00", "-05:00", "+02:00", ".125Z", "-0800"};
  std::snprintf(text, sizeof text, "%d-%02d-%02dT%02d:%02d:%02d%s", year, month + 1, day, hour,
                minute, second, kZones[zone]);
}

const CKQTime reader;

bool GetTime(const std::string& text, std::int64_t* seconds) {
  LONG time;
  const bool found = reader.GetTime(text.c_str(), &time);
  *seconds = time;
  return found;
}

bool ReadDate(const std::string& text, std::int64_t* seconds) {
  DateReading date;
  const bool found = vosmere::ReadDate(text.data(), text.size(), &date);
  *seconds = date.seconds;
  return found;
}

bool Curl(const std::string& text, std::int64_t* seconds) {
  *seconds = curl_getdate(text.c_str(), nullptr);
  return *seconds != -1;
}

bool Glib(const std::string& text, std::int64_t* seconds) {
  GDateTime* const date = g_date_time_new_from_iso8601(text.c_str(), nullptr);
  if (!date) return false;
  *seconds = g_date_time_to_unix(date);
  g_date_time_unref(date);
  return true;
}

template <class Read>
void Measure(const std::string& name, const std::vector<std::string>& texts, Read read) {
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    std::int64_t seconds;
    for (const std::string& text : texts)
      if (!read(text, &seconds)) return state.SkipWithError(("no date: " + text).c_str());
    std::size_t next = 0;
    for (auto _ : state) {
      read(texts[next], &seconds);
      benchmark::DoNotOptimize(seconds);
      if (++next == texts.size()) next = 0;
    }
  })->MinTime(0.02);
}

[[maybe_unused]] const bool registered = [] {
  const std::vector<std::string> mail = MakeTexts(PrintMailDate);
  Measure("Date/rfc822/GetTime/vosmere", mail, GetTime);
  Measure("Date/rfc822/GetTime/curl", mail, Curl);
  Measure("Date/rfc822/ReadDate/vosmere", mail, ReadDate);
  Measure("Date/rfc822/ReadDate/curl", mail, Curl);
  const std::vector<std::string> iso = MakeTexts(PrintIsoDate);
  Measure("Date/iso8601/GetTime/vosmere", iso, GetTime);
  Measure("Date/iso8601/GetTime/glib", iso, Glib);
  Measure("Date/iso8601/ReadDate/vosmere", iso, ReadDate);
  Measure("Date/iso8601/ReadDate/glib", iso, Glib);
  return true;
}();

}  // namespace
}  // namespace vosmere::bench
