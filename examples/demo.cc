// Loads a reading list, changes it, saves it, loads it again and checks that nothing was lost.
//
//   vosmere_demo examples/reading-list.opml
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "tools/platform.h"
#include "vosmere/cpp.h"
#include "vosmere/tree/tree_walk.h"

using namespace vosmere;
namespace fs = std::filesystem;

namespace {

// Prints a line for each folder: its name, the number of its collections, and the first of these.
void Show(RNode* folder, std::size_t level) {
  std::string names;
  int count = 0;
  for (RNode* const child : Children(folder)) {
    if (child->type != NT_COLCT || ++count > 3) continue;
    names += (names.empty() ? "" : ", ") + ToUtf8(child->item->GetName());
  }
  std::cout << std::string(2 * level, ' ') << ToUtf8(folder->item->GetName());
  if (count) std::cout << " (" << count << "): " << names << (count > 3 ? ", ..." : "");
  std::cout << '\n';
  for (RNode* const child : Children(folder))
    if (child->type == NT_FOLDER) Show(child, level + 1);
}

// Adds a new folder with one subscription, which is unread and flagged.
void AddNewThings(RNode* root) {
  CFolderNode& folder = *Add<CFolderNode>(root, u"To read on the train");
  folder.SetDescription(Wide(u"Added by the demo"));
  folder.SetUUID(SystemString(RNTool::CreateUUID()).get());

  CColctNode& comic = *Add<CColctNode>(folder.GetRNode(), u"Wondermark – comics weekly");
  comic.SetUrl(Wide(u"https:\\\\wondermark.com\\feed\\"));  // with backslashes, as the reader gives
  comic.SetUUID(SystemString(RNTool::CreateUUID()).get());
  comic.SetVersion(3);
  comic.GetColctNetData()->SetColctExpandState(true);
  CNodeStat* const stat = comic.GetNodeStat();
  stat->SetStatTime(1700000000, 1700086400, 1700172800,
                    CNodeStat::kAdded | CNodeStat::kModified | CNodeStat::kLastVisited);
  stat->MarkAsUnread(true);
  stat->SetFlag(2);
}

// Every stored field of an item. The document has no statistics and network settings of folders.
std::string Fields(RNode* link) {
  CBaseNode& item = *link->item;
  std::string all = ToUtf8(item.GetName()) + " | " + ToUtf8(item.GetDescription()) + " | " +
                    ToUtf8(item.GetUUID()) + " | version " + std::to_string(item.GetVersion());
  if (link->type != NT_COLCT) return all;
  auto& colct = static_cast<CColctNode&>(item);
  const CNodeStat& stat = *colct.GetNodeStat();
  LONG added = 0, modified = 0, lastVisited = 0;
  stat.GetStatTime(&added, &modified, &lastVisited);
  for (const int number : {added, modified, lastVisited, LONG{stat.IsUnread()}, stat.GetFlag(),
                           LONG{colct.GetColctNetData()->GetColctExpandState()}})
    all += " | " + std::to_string(number);
  return all + " | " + ToUtf8(colct.GetUrl()) + " | " + ToUtf8(colct.GetRelationUrl());
}

// The whole tree as lines, indented by level. Two trees are equal if their lines are equal.
std::vector<std::string> Snapshot(RNode* root) {
  std::vector<std::string> lines = {Fields(root)};
  std::size_t level = 1;
  WalkBelow(
      root,
      [&](RNode* link) {
        lines.push_back(std::string(level++, ' ') + Fields(link));
        return true;
      },
      [&](RNode*) { --level; });
  return lines;
}

bool Same(const std::vector<std::string>& before, const std::vector<std::string>& after) {
  for (std::size_t i = 0; i < before.size() || i < after.size(); ++i) {
    const std::string was = i < before.size() ? before[i] : "(nothing)";
    const std::string is = i < after.size() ? after[i] : "(nothing)";
    if (was == is) continue;
    std::cout << "LOST in item " << i << "\n  before: " << was << "\n  after:  " << is << '\n';
    return false;
  }
  return true;
}

int Complain(const Error& error) {
  std::cerr << error << '\n';
  return 1;
}

int Run(const fs::path& file) {
  const Result<Tree> list = Load<Tree>(file);
  if (!list) return Complain(list.error());
  const Tree& tree = *list;
  Show(tree.get(), 0);

  const std::size_t loaded = Snapshot(tree.get()).size();
  AddNewThings(tree.get());
  const std::vector<std::string> before = Snapshot(tree.get());
  std::cout << "\nLoaded " << loaded << " items, added " << before.size() - loaded << ":\n";
  Show(tree->firstChild->prev, 1);  // the last child: the head's `prev` is the last cell

  const Result<SavedBytes> saved = SaveToBytes(tree);
  if (!saved) return Complain(saved.error());
  for (const Loss& loss : saved->losses) std::cout << loss << '\n';
  const Result<Tree> back = Load<Tree>(Bytes(saved->bytes));
  if (!back) return Complain(back.error());
  if (!Same(before, Snapshot(back->get()))) return 1;
  std::cout << "\nSaved " << saved->bytes.size()
            << " bytes, loaded them back, compared every field of " << before.size()
            << " items: nothing was lost.\n";
  return 0;
}

int Main(const tool::Arguments& files) {
  if (files.size() != 1) {
    std::cerr << "usage: vosmere_demo FILE.opml\n";
    return 2;
  }
  try {
    return Run(std::u8string(files[0].begin(), files[0].end()));
  } catch (const std::exception& error) {
    std::cerr << "vosmere_demo: " << error.what() << '\n';
    return 2;
  }
}

}  // namespace

int main(int argc, char** argv) {
  return tool::RunProgram(argc, argv, Main);
}
