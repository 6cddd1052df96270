// Trees that a script of bytes builds and edits, and what must be true of every merge of them. The
// fuzzer writes the scripts, or a test does at random.
#pragma once

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/stored_tree.h"
#include "vosmere/cpp/diff.h"
#include "vosmere/cpp/lists.h"
#include "vosmere/merge/merge_trees.h"

namespace vosmere::test {

/// Edits a tree as one machine. What it adds gets names and addresses of its own, identities if it
/// has them, and a flag that tells in every copy which item it was.
class Machine {
 public:
  Machine(std::string name, std::string_view script, bool identifies = true)
      : name_(std::move(name)), script_(script), identifies_(identifies) {}

  vosmere::Tree Edited(const vosmere::Tree& from) {
    vosmere::Tree tree = Copy(from);
    while (!script_.empty()) Edit(tree);
    return tree;
  }

 private:
  unsigned Next() {
    if (script_.empty()) return 0;
    const auto byte = static_cast<unsigned char>(script_[0]);
    script_.remove_prefix(1);
    return byte;
  }
  std::string New(const char* what) { return what + name_ + std::to_string(++made_); }

  void Edit(const vosmere::Tree& tree) {
    std::vector<RNode*> links = {tree.get()}, folders = links;
    for (CBaseNode& item : Items(tree)) {
      links.push_back(item.GetRNode());
      if (item.GetRNode()->type == NT_FOLDER) folders.push_back(item.GetRNode());
    }
    const unsigned what = Next();
    RNode* const link = links[Next() % links.size()];
    RNode* const folder = folders[Next() % folders.size()];
    switch (what % 12) {
      case 0: Add(folder, Identified(NewTree(New("folder ")))); return;
      case 1: Add(folder, Identified(NewTree<CUrlNode>(New("page "), New("http://")))); return;
      case 2: Add(folder, Identified(NewTree<CColctNode>(New("feed "), New("http://")))); return;
      case 3:
      case 4: Move(link, folder, what & 64 ? folder->firstChild : nullptr); break;
      case 5: Move(link, link->parent, link->parent ? link->parent->firstChild : nullptr); return;
      case 6:
        if (what & 64) Remove(link);
        return;
      case 7: link->item->SetAsDeleted(what & 64); break;
      case 8: SetName(*link->item, New("name ")); break;
      case 9: SetDescription(*link->item, what & 64 ? New("text ") : ""); break;
      case 10:
        if (auto* const page = As<CUrlNode>(link)) AddTag(*page, New("tag"));
        break;
      default:
        if (auto* const page = As<CUrlNode>(link)) SetAddress(*page, New("http://"));
    }
    link->item->SetVersion(link->item->GetVersion() + static_cast<int>(what >> 7) + 1);
    link->item->GetNodeStat()->SetStatTime(0, static_cast<LONG>(what), 0, CNodeStat::kModified);
  }
  vosmere::Tree Identified(vosmere::Tree tree) {
    if (identifies_) tree->item->SetUUID(Wide(New("id ")));
    tree->item->GetNodeStat()->SetFlag(name_[0] << 16 | ++made_);
    return tree;
  }

  std::string name_;
  std::string_view script_;
  bool identifies_;
  int made_ = 0;
};

/// What the user sees of each item, by its flag; the root has none. Without identities there may be
/// several, as when one side has changed the name and the address of an item.
using Fields = std::map<std::string, std::string>;
using Contents = std::multimap<LONG, Fields>;

inline Contents ContentsOf(const vosmere::Tree& tree) {
  Contents contents;
  const auto add = [&](RNode* link) {
    const CBaseNode& item = *link->item;
    Fields fields = {{"name", ToUtf8(item.GetName())},
                     {"description", ToUtf8(item.GetDescription())},
                     {"deleted", item.IsDeleted() ? "yes" : "no"}};
    if (link->parent)
      fields["folder"] = std::to_string(link->parent->item->GetNodeStat()->GetFlag());
    if (const auto* const page =
            link->type == NT_FOLDER ? nullptr : static_cast<const CUrlNode*>(&item)) {
      fields["address"] = ToUtf8(page->GetUrl());
      std::set<std::string> tags;
      for (const TextView tag : Tags(*page)) tags.insert(tag);
      for (const std::string& tag : tags) fields["tags"] += tag + ' ';
    }
    contents.emplace(link->item->GetNodeStat()->GetFlag(), std::move(fields));
  };
  add(tree.get());
  for (CBaseNode& item : Items(tree)) add(item.GetRNode());
  return contents;
}

/// Merges, and remembers what was in conflict.
class Merger {
 public:
  vosmere::Tree operator()(const vosmere::Tree& base, const vosmere::Tree& ours,
                           const vosmere::Tree& theirs) {
    return vosmere::Tree(
        MergeTrees(base.get(), ours.get(), theirs.get(), TreeParts::kLinks, Add, this));
  }
  /// What two results of the same changes differ in, but for what was in conflict.
  std::string Differs(const vosmere::Tree& a, const vosmere::Tree& b) const {
    const auto first = Settled(a), second = Settled(b);
    if (first == second) return {};
    std::vector<std::string> differing;
    std::set_symmetric_difference(first.begin(), first.end(), second.begin(), second.end(),
                                  std::back_inserter(differing));
    std::string all;
    for (const std::string& item : differing) all += "only in one: " + item + '\n';
    return all;
  }

 private:
  std::multiset<std::string> Settled(const vosmere::Tree& tree) const {
    std::multiset<std::string> items;
    for (const auto& [flag, fields] : ContentsOf(tree)) {
      if (conflicts_.contains({flag, "removal"})) continue;
      std::string item = std::to_string(flag);
      for (const auto& [what, value] : fields)
        if (!conflicts_.contains({flag, what})) item += ", " + what + ' ' + value;
      items.insert(item);
    }
    return items;
  }
  static void Add(void* to, const MergeConflict& conflict) {
    static_cast<Merger*>(to)->conflicts_.emplace(conflict.merged->item->GetNodeStat()->GetFlag(),
                                                 conflict.what);
  }

  std::set<std::pair<LONG, std::string>> conflicts_;
};

/// What is wrong with the merge of two sides; empty if nothing is.
inline std::string MergeProblem(const vosmere::Tree& base, const vosmere::Tree& a,
                                const vosmere::Tree& b, bool haveIdentities = true) {
  Merger merge, both;
  const vosmere::Tree merged = merge(base, a, b), joined = both(nullptr, a, b);
  std::string all;
  const auto same = [&](const char* what, const vosmere::Tree& is, const vosmere::Tree& expected) {
    if (Dump(is.get()) == Dump(expected.get())) return;
    all += std::string(what) + " differ:\n";
    for (const ItemChange& change : Diff(is, expected)) all += ToString(change) + '\n';
  };
  same("merge(merge(a, b), b) and merge(a, b)", merge(base, merged, b), merged);
  same("merge(x, x, y) and y", merge(base, base, a), a);
  same("merge(x, y, x) and y", merge(base, a, base), a);
  same("merge(join, b) and join(a, b)", both(nullptr, joined, b), joined);
  all += merge.Differs(merged, merge(base, b, a)) + both.Differs(joined, both(nullptr, b, a));
  const Contents contents = ContentsOf(merged), united = ContentsOf(joined), old = ContentsOf(base);
  for (const vosmere::Tree* side : {&a, &b}) {
    for (const auto& [flag, fields] : ContentsOf(*side))
      if ((!old.contains(flag) && !contents.contains(flag)) || !united.contains(flag))
        all += fields.at("name") + " was added and is lost\n";
    if (Diff(base, *side).empty() != (Dump(base.get()) == Dump(side->get())))
      all += "the differences are not those that there are\n";
  }
  for (const Contents* items : {&contents, &united})
    for (const auto& [flag, fields] : *items)
      if (haveIdentities && items->count(flag) > 1) all += fields.at("name") + " is there twice\n";
  return all;
}

}  // namespace vosmere::test
