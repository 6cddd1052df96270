// Loads a list that a feed reader exported, and prints what is not kept.
//
// Prints: News & views > a feed, not all of /opml/body/outline/outline
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
  for (const CColctNode& feed : Collections(*list))
    std::cout << NameOf(feed.GetRNode()->parent) << " > " << NameOf(feed);
  for (const Loss& loss : leftOut)  // the attribute 'rating' of 'outline' is not kept: ...
    if (loss.kind == LossKind::kUnknown) std::cout << ", not all of " << loss.places[0].path;
  std::cout << '\n';
}
