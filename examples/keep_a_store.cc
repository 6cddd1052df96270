// Keeps a tree in a store: changes are written as they are made, watched, undone, and looked up.
//
// Prints: Trips was added; 2 changes, undone: 0 folders; checkpoints: 2, notes: 2
#include <filesystem>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

// Changes of a tree that is in no store can be watched like this.
class Watcher : public TreeObserver {
 public:
  int changes = 0;
  ~Watcher() override { StopObserving(); }

 private:
  void Adding(RNode*, RNode*, RNode*) override { ++changes; }
  void Moving(RNode*, RNode*, RNode*) override {}
  void Removing(RNode*) override { ++changes; }
  void Changing(RNode*) override {}
  void Changed(RNode*) override {}
  void Sorting(RNode*) override {}
  void Sorted(RNode*) override {}
};

int main() {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / "vosmere-keep-a-store";
  std::filesystem::remove_all(folder);
  {
    StoreOptions options;
    options.keep = 2;
    Result<Store> store = Store::Open(FilePath(folder).get(), options);  // on top of TreeStore
    if (!store) {
      std::cerr << store.error() << '\n';
      return 1;
    }
    store->Listen([](std::uint64_t, CVSMNotifyMsg& message) {
      if (message.GetNotifyType() % 1000 == 0)
        std::cout << ToUtf8(message.GetName()) << " was added";
    });
    Add<CFolderNode>(store->tree(), "Trips");
    if (const auto error = store->Flush()) std::cerr << *error << '\n';
    if (!store->Undo()) return 1;
    const Place top = store->tree();  // a Place is where items are, a Link one of them
    std::cout << "; " << store->sequence()
              << " changes, undone: " << std::ranges::distance(Folders(top)) << " folders";
    if (const auto error = store->Checkpoint()) std::cerr << *error << '\n';
  }
  const Result<Store> again = Store::Open(FilePath(folder).get());
  const Result<std::vector<StoredCheckpoint>> checkpoints =
      Store::Checkpoints(FilePath(folder).get());
  std::size_t notes = 0;
  for (const StoreNote& note : again->notes()) notes += note.kind == StoreNoteKind::kState;
  std::cout << "; checkpoints: " << checkpoints->size() << ", notes: " << notes << '\n';

  Watcher watcher;  // outlives the tree, or stops observing it
  const Tree tree = NewTree("Bookmarks");
  TreeObserver::Observe(tree.get(), &watcher);
  CUrlNode* const page = Add<CUrlNode>(tree, "Weather", "http://a.example/");
  page->SetUUID(SystemString(RNTool::CreateUUID()).get());
  const Link link = Find<CUrlNode>(tree, WithIdentity{page->GetUUID()});
  for (const CUrlNode& each : Range<CUrlNode>(tree))  // what Pages(tree) returns
    if (each.GetRNode() != link) return 1;
  if (Find<CUrlNode>(tree, AtAddress{"http://a.example/"}) != page ||
      Find<CUrlNode>(tree, Named{"Weather"})->GetRNode() != link || watcher.changes != 1)
    return 1;
}
