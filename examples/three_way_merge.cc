// Merges two trees that were changed independently, and lists what differs.
//
// Prints: took theirs: address; + News; 1 field; collections: 1 conflict
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

Tree Version(const char* address, LONG modified) {
  Tree tree = NewTree("Bookmarks");
  CUrlNode* const page = Add<CUrlNode>(tree, "Weather", address);
  SetTimes(*page, ItemTimes{.modified = sys_seconds(std::chrono::seconds(modified))});
  return tree;
}

Collection Feed(const char* description, LONG modified) {
  Collection feed(CColctNode::New());
  SetName(*feed, "Weather");
  SetAddress(*feed, "http://a.example/feed");
  SetDescription(*feed, description);
  feed->GetNodeStat()->SetStatTime(0, modified, 0, CNodeStat::kModified);
  return feed;
}

// One level below the layer: the same differences as records, with links and views.
class Counter : public DiffHandler {
 public:
  int changed = 0;
  bool FieldsDiffer(std::size_t, std::size_t) override { return true; }
  void Report(const ItemDifference& difference) override {
    changed += (difference.what & kIsChanged) != 0;
  }
};

int main() {
  const Tree base = Version("http://a.example/", 1);
  const Tree ours = Version("http://b.example/", 2), theirs = Version("http://c.example/", 3);
  Add<CFolderNode>(ours, "News");
  const Merged merged = Merge(base, ours, theirs);
  for (const Conflict& conflict : merged.conflicts)
    std::cout << "took " << (conflict.tookTheirs ? "theirs" : "ours") << ": " << conflict.what;
  for (const ItemChange& change : Diff(theirs, merged.tree)) {
    for (const FieldChange& field : change.fields) std::cout << field.field << ": " << field.after;
    std::cout << "; " << change;
  }

  const auto count = [](void* to, const FieldDifference& field) {
    *static_cast<int*>(to) += std::string_view(field.field) == "address";
  };
  int fields = 0;
  DiffFields(base->firstChild, ours->firstChild, count, &fields);
  const auto each = [](void*, const TreeDifference& difference) {
    if (difference.what & kIsRemoved) std::cout << "nothing was removed";
  };
  DiffTrees(base.get(), merged.tree.get(), TreeParts::kLinks, each, nullptr);
  Counter counter;
  const OutlineItem items[] = {{}, {.name = "Weather"}};
  DiffItems(items, 2, items, 2, counter);
  std::cout << "; " << fields << " field; ";
  const auto conflictsWith = [](void*, const MergeConflict& conflict) {
    if (!conflict.merged) std::cout << "never";
  };
  const Tree copy(
      MergeTrees(base.get(), ours.get(), theirs.get(), TreeParts::kLinks, conflictsWith, nullptr));

  const MergedCollection feed = Merge(Feed("", 1), Feed("daily", 2), Feed("hourly", 3));
  std::cout << "collections: " << feed.conflicts.size() << " conflict\n";
  return counter.changed > 0 ? 0 : 1;
}
