// Loads what a feed reader exported, and says what of it is not kept.
//
// Prints: News & views: a feed; the attribute 'rating' of 'outline' is not kept:
// .*/opml/body/outline/outline
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

constexpr char kExport[] = R"(<opml version="2.0">
<head><title>Subscriptions</title></head>
<body><outline text="News &amp; views">
<outline text="a feed" type="rss" xmlUrl="http://a.example/feed" rating="5"/>
</outline></body></opml>)";

int main() {
  Losses leftOut;
  const Result<Tree> list = Load<Tree>(Bytes(kExport), &leftOut);
  if (!list) {
    std::cerr << list.error() << '\n';
    return 1;
  }
  for (const CFolderNode& folder : Folders(*list)) {
    std::cout << NameOf(folder) << ": ";
    for (const CColctNode& feed : Collections(&folder)) std::cout << NameOf(feed) << "; ";
  }
  for (const Loss& loss : leftOut)
    if (loss.kind == LossKind::kUnknown) std::cout << loss << '\n';
}
