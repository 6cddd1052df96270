// Any text is a date or none for every reader, and what ReadDate finds can be written, and is read
// by all readers as the same time again.
#include <cstdio>
#include <ctime>
#include <limits>
#include <string>
#include <vector>

#include "fuzz/support.h"
#include "vosmere/base/system_string.h"
#include "vosmere/text/date_reader.h"
#include "vosmere/text/feed_date.h"

using namespace vosmere;
using namespace vosmere::fuzz;

namespace {

/// A time in the form of ISO 8601 and in that of mail is read alike by both readers.
void CheckWritten(const CKQTime& reader, LONG seconds) {
  char iso[26], mail[64];
  Require(reader.GetDCDate(seconds, iso));
  const std::time_t time = seconds;
  std::tm parts;
  std::strftime(mail, sizeof mail, "%a, %d %b %Y %H:%M:%S GMT", gmtime_r(&time, &parts));
  for (const char* const text : {iso, mail}) {
    DateReading date;
    LONG read;
    Require(ReadDate(text, &date) && date.seconds == seconds && date.zoneKnown);
    Require(reader.GetTime(text, &read) && read == seconds);
  }
}

}  // namespace

// The readers print unknown names to standard output, which is not wanted here.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
  return std::freopen("/dev/null", "w", stdout) ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  static const CKQTime reader;
  LONG seconds;
  Require(!reader.GetTime(text.c_str(), &seconds) || seconds >= 0);

  // A system string of the bytes as units, and one of pairs of bytes.
  const std::vector<WChar> units(data, data + size);
  std::vector<WChar> pairs;
  for (std::size_t i = 0; i + 1 < size; i += 2)
    pairs.push_back(static_cast<WChar>(data[i] << 8 | data[i + 1]));
  for (const std::vector<WChar>& wide : {units, pairs}) {
    BSTR const string = SysAllocStringLen(wide.data(), wide.size());
    Require(!reader.GetEpochTimeFromDCDateBSTR(&seconds, string) || seconds >= 0);
    SysFreeString(string);
  }

  DateReading date, again;
  const bool found = ReadDate(text.data(), size, &date);
  Require(ReadDate(units.data(), size, &again) == found);
  ReadDate(pairs.data(), pairs.size(), &again);
  if (found && date.seconds >= 0 && date.seconds <= std::numeric_limits<LONG>::max())
    CheckWritten(reader, static_cast<LONG>(date.seconds));
  return 0;
}
