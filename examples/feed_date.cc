// Reads the date of an entry of a feed.
//
// Prints: 1994-11-06T08:49:37Z, yesterday is not a date
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

bool SetPublished(CUrlNode& page, std::string_view text) {
  const auto date = ParseDate(text);
  return date && SetTimes(page, {.added = date});
}

int main() {
  const Tree tree = NewTree("Feed");
  CUrlNode& page = *Add<CUrlNode>(tree, "Entry");
  if (SetPublished(page, "Sun, 06 Nov 1994 00:49:37 -0800"))
    std::cout << ToIsoDate(*TimesOf(page).added).value_or("?");
  if (!SetPublished(page, "yesterday")) std::cout << ", yesterday is not a date\n";
}
