// Trees with a value in every field that change at random, and a whole tree as text.
#pragma once

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "vosmere/cpp/tree.h"

namespace vosmere::test {

inline std::string Quoted(const WChar* text) {
  if (!text) return "-";
  std::string quoted = "'";
  for (const WChar* at = text; *at; ++at) quoted += std::to_string(*at) + ".";
  return quoted + "'";
}

inline void DumpPage(const CUrlNode& page, std::ostream& out) {
  out << " url " << Quoted(page.GetUrl()) << Quoted(page.GetAuthor())
      << Quoted(page.GetRelationUrl()) << page.GetItemType();
  static const CUrlProp kNothing;
  const CUrlProp* const prop = page.GetUrlProp() ? page.GetUrlProp() : &kNothing;
  const RNode* const ref = prop->GetRefColctRNode();
  out << " prop " << prop->GetFileType() << Quoted(prop->GetFileExtension())
      << prop->DoNeedSaveKeyWords() << (ref ? Quoted(ref->item->GetUUID()) : "");
  for (const auto* tag : chain::Cells(prop->GetTagsHead())) out << Quoted(tag->data);
}

inline void DumpColct(const CColctNode& colct, std::ostream& out) {
  const CColctNetData& net = *colct.GetColctNetData();
  out << " colct " << colct.GetColctType() << colct.HasNewData() << colct.GetLoadingState()
      << " net " << net.IsOrdered() << Quoted(net.GetOwner()) << net.GetSharingDomain() << ' '
      << net.IsForeignColct() << net.GetRole() << ' ' << net.IsSynced() << net.GetPollingInterval()
      << ' ' << net.GetIssuedTimeEventID() << ' ' << net.GetColctExpandState();
}

/// Every field of every item; two trees are equal if these texts are.
inline void Dump(const RNode* link, std::ostream& out) {
  if (!link) return void(out << "(none)");
  const CBaseNode& item = *link->item;
  LONG added, modified, visited;
  item.GetNodeStat()->GetStatTime(&added, &modified, &visited);
  int checkedIn;
  item.HasCheckedIn(&checkedIn);
  out << '\n'
      << link->type << ' ' << link->extData << Quoted(item.GetName())
      << Quoted(item.GetDescription()) << Quoted(item.GetUUID()) << ' ' << added << ' ' << modified
      << ' ' << visited << ' ' << item.GetNodeStat()->GetSetTimes()
      << item.GetNodeStat()->IsUnread() << item.GetNodeStat()->GetFlag() << ' ' << item.GetVersion()
      << ' ' << item.GetOrder() << ' ' << checkedIn << ' ' << item.GetBaseBuild() << ' '
      << item.IsDeleted() << item.GetNodeData();
  if (const auto* page = As<CUrlNode>(const_cast<RNode*>(link))) DumpPage(*page, out);
  if (const auto* colct = As<CColctNode>(const_cast<RNode*>(link))) {
    DumpPage(*colct, out);
    DumpColct(*colct, out);
    if (colct->GetLocRNodeRoot()) {
      out << " [";
      Dump(colct->GetLocRNodeRoot(), out);
      out << ']';
    }
  }
  if (!link->firstChild) return;
  out << '(';
  for (const RNode* child : chain::Cells(link->firstChild)) {
    Dump(child, out);
    if (child->parent != link) out << "BROKEN";
  }
  out << ')';
}
inline std::string Dump(const RNode* link) {
  std::ostringstream out;
  Dump(link, out);
  return out.str();
}

/// Changes a tree at random, using only the operations of the layer.
class RandomChanges {
 public:
  explicit RandomChanges(unsigned seed) : random_(seed) {}

  /// Makes one change, or none if the random choice does not fit.
  void Change(RNode* root) {
    std::vector<RNode*> links, folders;
    Gather(root, links, folders);
    RNode* const link = links[Number(links.size())];
    RNode* const folder = folders[Number(folders.size())];
    switch (Number(10)) {
      case 0:
      case 1: AddSomething(folder); break;
      case 2:  // but not into a local tree, which may belong to something in the folder
        if (RNTool::GetRootNode(folder) == root)
          Move(link, folder, folder->firstChild && Flip() ? folder->firstChild : nullptr);
        break;
      case 3:
        if (Number(3) == 0) Free(Remove(link));
        break;
      case 4: Sort(folder, static_cast<SortBy>(Number(4)), Flip()); break;
      case 5: SetName(*link->item, Text()); break;
      default: Update(*link->item, [&](CBaseNode& item) { SetFields(link, item, links); }); break;
    }
  }
  /// Frees the tree and its local trees, which the tree does not free.
  static void Free(Tree tree) {
    std::vector<RNode*> links, folders;
    if (tree) Gather(tree.get(), links, folders);
    std::vector<Tree> locals;
    for (RNode* const link : links)
      if (auto* const colct = As<CColctNode>(link)) locals.emplace_back(colct->GetLocRNodeRoot());
  }

 private:
  unsigned Number(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
  bool Flip() { return random_() & 1; }
  LONG AnyNumber() { return static_cast<LONG>(random_()); }

  static void Gather(RNode* top, std::vector<RNode*>& links, std::vector<RNode*>& folders) {
    links.push_back(top);
    if (top->type == NT_FOLDER) folders.push_back(top);
    for (RNode* child : chain::Cells(top->firstChild)) Gather(child, links, folders);
    if (auto* const colct = As<CColctNode>(top))
      if (colct->GetLocRNodeRoot()) Gather(colct->GetLocRNodeRoot(), links, folders);
  }

  std::u16string Text() {
    static const char16_t* const kTexts[] = {u"",    u"a",    u"News",
                                             u"Åse", u"世界", u"lone \xD800 unit"};
    return kTexts[Number(6)] + std::u16string(Number(5), u'x');
  }

  void AddSomething(RNode* folder) {
    switch (Number(4)) {
      case 0: Add<CFolderNode>(folder, Text()); break;
      case 1: {
        Collection colct = NewCollection(Text());
        Add<CUrlNode>(*colct, Text(), Text());
        colct->SetUUID(Wide(std::to_string(random_())));
        Tree tree(RNode::New2(colct.release(), NT_COLCT));
        Add(folder, std::move(tree));
        break;
      }
      case 2: {
        Tree tree = NewTree(Text());
        Add<CUrlNode>(tree, Text(), Text());
        Add<CFolderNode>(tree, Text());
        Add(folder, std::move(tree), folder->firstChild && Flip() ? folder->firstChild : nullptr);
        break;
      }
      default: Add<CUrlNode>(folder, Text(), Text()); break;
    }
  }

  const WChar* TextOrNull() {
    const std::u16string text = Text();
    text_.assign(text.begin(), text.end());
    text_.push_back(0);
    return Number(5) ? text_.data() : nullptr;
  }

  void SetFields(RNode* link, CBaseNode& item, const std::vector<RNode*>& links) {
    link->extData = static_cast<ULONG>(AnyNumber());
    item.SetName(TextOrNull());
    item.SetDescription(TextOrNull());
    item.SetUUID(TextOrNull());
    item.GetNodeStat()->SetStatTime(AnyNumber(), AnyNumber(), AnyNumber(), Number(8));
    item.GetNodeStat()->MarkAsUnread(Flip());
    item.GetNodeStat()->SetFlag(AnyNumber());
    item.SetVersion(AnyNumber());
    item.SetOrder(AnyNumber());
    item.SetCheckedIn(AnyNumber());
    item.SetBaseBuild(AnyNumber());
    item.SetAsDeleted(Flip());
    item.SetNodeData(static_cast<ULONG>(AnyNumber()));
    if (link->type != NT_FOLDER) SetFields(static_cast<CUrlNode&>(item), links);
    if (link->type == NT_COLCT) SetFields(static_cast<CColctNode&>(item));
  }
  void SetFields(CUrlNode& page, const std::vector<RNode*>& links) {
    page.SetUrl(TextOrNull());
    page.SetAuthor(TextOrNull());
    page.SetRelationUrl(TextOrNull());
    page.SetItemType(static_cast<tagVSMITEMTYPE>(Number(4)));
    if (!std::as_const(page).GetUrlProp() && Flip()) return;
    CUrlProp& prop = *page.GetUrlProp();
    prop.SetFileType(static_cast<tagVSMITEMFILETYPE>(Number(7)));
    prop.SetFileExtension(TextOrNull());
    prop.SetNeedSaveKeyWords(Flip());
    const auto target = std::find_if(links.begin() + Number(links.size()), links.end(),
                                     [](RNode* link) { return link->type == NT_COLCT; });
    prop.SetRefColctRNode(target == links.end() ? nullptr : *target);
    CUrlProp::DeleteTagsList(prop.DetachTagsHead());
    std::vector<WChar> tags = {'a', ' ', 'b', 0};
    if (Flip()) prop.SetTagsList(CUrlProp::GenerateRBstrItemList(tags.data()));
  }
  void SetFields(CColctNode& colct) {
    CColctNetData& net = *colct.GetColctNetData();
    colct.SetColctType(static_cast<tagCOLCTTYPE>(Number(3)));
    colct.SetHasNewData(Flip());
    colct.SetLoadingState(static_cast<int>(Number(4)) - 1);
    net.SetOrdered(Flip());
    net.SetOwner(TextOrNull());
    net.SetSharingDomain(AnyNumber());
    net.SetBeForeignColct(Flip());
    net.SetRole(AnyNumber());
    net.SetSynced(Flip());
    net.SetPollingInterval(AnyNumber());
    net.SetIssuedTimeEventID(AnyNumber());
    net.SetColctExpandState(Flip());
  }

  std::mt19937 random_;
  std::vector<WChar> text_;
};

}  // namespace vosmere::test
