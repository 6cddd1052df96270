// Makes the tree and the collection that the benchmarks load and save.
#include "bench/sample_tree.h"

#include <cstdio>
#include <random>
#include <string>
#include <string_view>

#include "vosmere/collections/colct_node.h"
#include "vosmere/cpp/lists.h"
#include "vosmere/cpp/text.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere::bench {
namespace {

constexpr int kDeepest = 6;
constexpr std::string_view kWords[] = {
    "news",    "travel",  "recipes", "weather", "music",  "garden", "science", "history",
    "reading", "cinema",  "sports",  "finance", "design", "photos", "archive", "weekly",
    "daily",   "journal", "notes",   "letters", "maps",   "radio",  "museum",  "library"};
constexpr std::string_view kAccented[] = {"Café",         "Zürich",     "naïve", "Málaga",
                                          "crème brûlée", "Ærøskøbing", "Łódź",  "São Paulo"};
constexpr std::string_view kChinese[] = {"新闻", "旅行", "天气预报", "音乐", "图书馆", "每日阅读"};

class Generator {
 public:
  explicit Generator(std::size_t bytes) : wanted_(bytes) {}

  RNode* Tree() {
    RNode* const root = NewFolder(nullptr);
    while (written_ < wanted_) FillFolder(NewFolder(root), 1, &Generator::NewColct);
    return root;
  }

  CColctNode* Colct() {
    CColctNode* const colct = CColctNode::New();
    colct->SetName(Wide(Words(3)));
    colct->GetColctNetData()->SetOrdered(true);
    colct->GetColctNetData()->SetSynced(true);
    colct->SetLocRNodeRoot(RNode::New2(CFolderNode::New(), NT_FOLDER));
    while (written_ < wanted_)
      FillFolder(NewFolder(colct->GetLocRNodeRoot()), 1, &Generator::NewPage);
    return colct;
  }

 private:
  unsigned Below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
  bool OneIn(unsigned count) { return Below(count) == 0; }

  template <std::size_t N>
  std::string_view Any(const std::string_view (&words)[N]) {
    return words[Below(N)];
  }

  std::string Words(unsigned count) {
    std::string text;
    for (unsigned i = 0; i < count; ++i) {
      if (i > 0) text += ' ';
      text += OneIn(12) ? Any(kAccented) : OneIn(16) ? Any(kChinese) : Any(kWords);
    }
    return text;
  }

  std::string Address() {
    std::string text = "https:\\\\www.";
    const std::size_t length = 60 + Below(51) - 4;
    while (text.size() < length) {
      text += Any(kWords);
      text += OneIn(5) ? '-' : '\\';
    }
    text.resize(length);
    return text + ".rss";
  }

  std::string Uuid() {
    const auto word = [this] { return static_cast<unsigned>(random_() & 0xFFFF); };
    char text[37];
    std::snprintf(text, sizeof text, "%04x%04x-%04x-4%03x-a%03x-%04x%04x%04x", word(), word(),
                  word(), word() & 0xFFF, word() & 0xFFF, word(), word(), word());
    return text;
  }

  RNode* NewLink(RNode* parent, CBaseNode* item, tagNODETYPE type) {
    const std::string name = Words(2 + Below(4));
    item->SetName(Wide(name));
    item->SetUUID(Wide(Uuid()));
    item->SetVersion(static_cast<int>(1 + Below(40)));
    written_ += name.size() + 110;  // including the markup and the synchronisation element
    if (OneIn(3)) {
      const std::string description = Words(8 + Below(12));
      item->SetDescription(Wide(description));
      written_ += description.size() + 15;
    }
    RNode* const link = RNode::New2(item, type);
    if (parent) RNTool::InsertAsChild(parent, link);
    return link;
  }

  RNode* NewFolder(RNode* parent) { return NewLink(parent, CFolderNode::New(), NT_FOLDER); }

  void FillFolder(RNode* folder, int depth, void (Generator::*newItem)(RNode*)) {
    for (unsigned left = 6 + Below(12); left > 0; --left) (this->*newItem)(folder);
    if (depth == kDeepest) return;
    for (unsigned left = Below(3); left > 0; --left)
      FillFolder(NewFolder(folder), depth + 1, newItem);
  }

  void NewColct(RNode* folder) {
    CColctNode* const colct = CColctNode::New();
    NewLink(folder, colct, NT_COLCT);
    SetAddressAndStat(*colct);
    if (OneIn(4)) colct->GetColctNetData()->SetOwner(Wide(Any(kAccented)));
    if (OneIn(5)) colct->GetColctNetData()->SetColctExpandState(true);
  }

  void NewPage(RNode* folder) {
    CUrlNode* const page = CUrlNode::New();
    NewLink(folder, page, NT_URL);
    SetAddressAndStat(*page);
    written_ += 180;  // including the reference to the folder and the date
    if (OneIn(3)) page->SetAuthor(Wide(Any(kAccented)));
    if (OneIn(3)) page->SetBaseBuild(static_cast<int>(1 + Below(900)));
    if (OneIn(4)) {
      SetTags(*page, Words(1 + Below(4)));
    }
    if (!OneIn(4)) return;
    page->SetItemType(static_cast<tagVSMITEMTYPE>(1 + Below(3)));
    if (page->GetItemType() != IT_NOTE) page->SetRelationUrl(Wide(Address()));
    if (page->GetItemType() == IT_FILE)
      page->GetUrlProp()->SetFileType(static_cast<tagVSMITEMFILETYPE>(Below(7)));
  }

  void SetAddressAndStat(CUrlNode& page) {
    const std::string address = Address();
    page.SetUrl(Wide(address));
    const LONG added = static_cast<LONG>(1100000000 + Below(300000000));
    CNodeStat& stat = *page.GetNodeStat();
    stat.SetStatTime(added, added + static_cast<LONG>(Below(10000000)),
                     added + static_cast<LONG>(Below(20000000)),
                     CNodeStat::kAdded | CNodeStat::kModified | CNodeStat::kLastVisited);
    stat.MarkAsUnread(OneIn(4));
    if (OneIn(6)) stat.SetFlag(static_cast<int>(1 + Below(5)));
    written_ += address.size() + 115;  // including the statistics and the markup of the address
  }

  std::mt19937 random_{20240501};
  std::size_t wanted_;
  std::size_t written_ = 0;
};

}  // namespace

RNode* NewSampleTree(std::size_t bytes) {
  return Generator(bytes).Tree();
}

CColctNode* NewSampleColct(std::size_t bytes) {
  return Generator(bytes).Colct();
}

}  // namespace vosmere::bench
