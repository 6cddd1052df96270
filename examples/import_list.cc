// Imports a list as another program wrote it, and says what had to be repaired.
//
// Prints: 2:20: an '&' that begins no reference: '&' became '&amp;' => Tom & Jerry
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

constexpr char kExport[] = R"(<opml><head><title>Subscriptions</title></head><body>
<outline text="Tom & Jerry" type="RSS" xmlurl="http://a.example/feed"/>
</body></opml>)";

int main() {
  const Result<Imported> imported = Import(Bytes(kExport));
  if (!imported) {
    std::cerr << imported.error() << '\n';
    return 1;
  }
  for (const Repair& repair : imported->repairs)
    if (repair.kind == RepairKind::kAmpersand) std::cout << repair;
  for (const CColctNode& feed : Collections(imported->tree)) std::cout << " => " << NameOf(feed);
  std::cout << '\n';
}
