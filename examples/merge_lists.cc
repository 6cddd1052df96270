// Joins two lists of feeds, and updates one from a newly read list.
//
// Prints: Weather, Sport, later: Sport, Music, gone: Weather
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

void MergeInto(ColctList& ours, ColctList theirs) {
  Join(ours, std::move(theirs));
  RemoveDuplicates(ours);  // compares addresses; the first of equal ones stays
}

ColctList List(std::initializer_list<const char*> names) {
  ColctList list;
  for (const char* name : names) {
    CColctNode& colct = Append(list);
    SetName(colct, name);
    SetAddress(colct, "http://feeds.example/" + std::string(name));
  }
  return list;
}

std::string Names(const ColctList& list) {
  std::string names;
  for (const CColctNode& colct : Each(list)) names += (names.empty() ? "" : ", ") + NameOf(colct);
  return names;
}

int main() {
  ColctList list = List({"Weather"});
  MergeInto(list, List({"Sport", "Weather"}));
  std::cout << Names(list);

  const ColctList gone = Merge(list, List({"Sport", "Music"}));
  std::cout << ", later: " << Names(list) << ", gone: " << Names(gone) << '\n';
}
