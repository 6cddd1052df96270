// What differs between two trees or collections, item by item.
//
//   for (const ItemChange& change : Diff(*before, *after))
//     std::cout << change << '\n';                    // ~ News > Daily: moved from Sports
//
// The only exception thrown is std::bad_alloc.
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vosmere/cpp/losses.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/tree.h"
#include "vosmere/cpp/walk.h"
#include "vosmere/merge/diff_trees.h"

namespace vosmere {

/// A field that differs. The values are for the user.
struct FieldChange {
  std::string field;
  std::string before;
  std::string after;
};

/// An item that was added, removed, moved, renamed or changed, or several of these at once.
struct ItemChange {
  unsigned what = 0;    ///< bits of Difference
  std::string name;     ///< as it is now, or was if it was removed
  std::string folder;   ///< its folders, as "News > Daily"; empty for the top
  std::string oldName;  ///< if it was renamed
  std::string oldFolder;
  std::vector<FieldChange> fields = {};  ///< other fields that differ
  RNode* before = nullptr;  ///< in the trees that were compared, valid as long as they are
  RNode* after = nullptr;
};

namespace detail {

inline std::string InFolder(const std::string& folder, const std::string& name) {
  return folder.empty() ? name : folder + " > " + name;
}

inline std::string FolderOf(const RNode* link) {
  const RNode* const folder = link ? link->parent : nullptr;
  return folder && folder->parent && folder->item ? PlaceOf(*folder->item) : std::string();
}

}  // namespace detail

/// "+ News > Daily", "- News > Daily", or "~ News > Daily: renamed from 'Day'; moved from Sports".
inline std::string ToString(const ItemChange& change) {
  const std::string place = detail::InFolder(change.folder, change.name);
  if (change.what & kIsAdded) return "+ " + place;
  if (change.what & kIsRemoved) return "- " + place;
  std::string text = "~ " + place, separator = ": ";
  const auto add = [&](const std::string& what) {
    text += separator + what;
    separator = "; ";
  };
  if (change.what & kIsRenamed) add("renamed from '" + change.oldName + "'");
  if (change.what & kIsMoved)
    add(change.folder == change.oldFolder ? "moved among its siblings"
        : change.oldFolder.empty()        ? "moved from the top"
                                          : "moved from " + change.oldFolder);
  for (const FieldChange& field : change.fields)
    add(field.field + ": '" + field.before + "' -> '" + field.after + "'");
  return text;
}

inline std::ostream& operator<<(std::ostream& out, const ItemChange& change) {
  return out << ToString(change);
}

namespace detail {

inline void AddFieldChange(void* to, const FieldDifference& difference) {
  auto& change = *static_cast<ItemChange*>(to);
  if (std::string_view(difference.field) != "name")
    change.fields.push_back({difference.field, difference.before, difference.after});
}

inline void AddItemChange(void* to, const TreeDifference& difference) {
  ItemChange change;
  change.what = difference.what;
  change.before = const_cast<RNode*>(difference.before);
  change.after = const_cast<RNode*>(difference.after);
  const RNode* const link = difference.after ? difference.after : difference.before;
  change.name = ShortName(link->item->GetName());
  change.folder = FolderOf(link);
  if (difference.what & kIsRenamed) change.oldName = ShortName(difference.before->item->GetName());
  if (difference.what & kIsMoved) change.oldFolder = FolderOf(difference.before);
  if (difference.before && difference.after)
    DiffFields(difference.before, difference.after, AddFieldChange, &change);
  static_cast<std::vector<ItemChange>*>(to)->push_back(std::move(change));
}

/// A collection in the place of a root, for the operations on trees. Owns only the link.
using ColctLink = Owned<RNode, RNode::Delete>;

inline ColctLink LinkOf(const Collection& colct) {
  if (!colct) return nullptr;
  ColctLink link(RNode::New(colct.get(), NT_COLCT));
  if (!link) ThrowNoMemory();
  return link;
}

inline std::vector<ItemChange> DiffOf(const RNode* a, const RNode* b, TreeParts parts) {
  std::vector<ItemChange> changes;
  DiffTrees(a, b, parts, AddItemChange, &changes);
  return changes;
}

}  // namespace detail

/// Every item that differs: first those that were removed, then all others in the order of `b`.
/// merge/match_items.h says how items are found, merge/diff_trees.h which fields count. Local
/// trees of collections in the trees are not compared, since a Tree does not own them.
inline std::vector<ItemChange> Diff(Link a, Link b) {
  return detail::DiffOf(a, b, TreeParts::kLinks);
}
/// Of two collections, with what is in their local trees. The links of the collections themselves
/// are not those of a tree, and null.
inline std::vector<ItemChange> Diff(const Collection& a, const Collection& b) {
  const detail::ColctLink before = detail::LinkOf(a), after = detail::LinkOf(b);
  std::vector<ItemChange> changes =
      detail::DiffOf(before.get(), after.get(), TreeParts::kWithLocalTrees);
  for (ItemChange& change : changes) {
    if (change.before == before.get()) change.before = nullptr;
    if (change.after == after.get()) change.after = nullptr;
  }
  return changes;
}

}  // namespace vosmere
