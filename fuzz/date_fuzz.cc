// Any text is a date or none for every reader, and what ReadDate finds can be written and read
// again.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "vosmere/base/system_string.h"
#include "vosmere/text/date_reader.h"
#include "vosmere/text/feed_date.h"

using namespace vosmere;

namespace {

void Require(bool condition) {
  if (!condition) std::abort();
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
  char written[26];
  if (found && date.seconds <= std::numeric_limits<LONG>::max() &&
      reader.GetDCDate(static_cast<LONG>(std::max<std::int64_t>(date.seconds, 0)), written)) {
    Require(ReadDate(written, &again));
    Require(again.seconds == std::max<std::int64_t>(date.seconds, 0));
  }
  return 0;
}
