// Making one tree or collection of two that have been changed independently.
//
//   Merged merged = Merge(*base, *ours, *theirs);       // or Merge(*ours, *theirs), without a base
//   for (const Conflict& conflict : merged.conflicts)
//     std::cout << conflict << '\n';                    // News > Daily: address: ours 'a', theirs
//     ...
//   for (const ItemChange& change : Diff(*ours, merged.tree)) ...     // what the merge would
//   change
//
// merge/merge_trees.h has the rules. The arguments stay as they are. The only exception thrown
// is std::bad_alloc, with nothing made.
#pragma once

#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "vosmere/cpp/diff.h"
#include "vosmere/cpp/documents.h"
#include "vosmere/merge/merge_trees.h"

namespace vosmere {

/// Something that both sides have changed, each in another way.
struct Conflict {
  std::string place;  ///< the item in the merged tree, as "News > Daily"
  std::string what;   ///< the name of a field, "folder", "deleted" or "removal"
  std::string ours;
  std::string theirs;
  bool tookTheirs = false;
};

/// "News > Daily: address: ours 'a', theirs 'b'; took ours"
inline std::string ToString(const Conflict& conflict) {
  return conflict.place + ": " + conflict.what + ": ours '" + conflict.ours + "', theirs '" +
         conflict.theirs + "'; took " + (conflict.tookTheirs ? "theirs" : "ours");
}
inline std::ostream& operator<<(std::ostream& out, const Conflict& conflict) {
  return out << ToString(conflict);
}

/// What Merge has made.
struct Merged {
  Tree tree;  ///< without the local trees of collections; empty if both sides were
  std::vector<Conflict> conflicts = {};
};
/// What Merge has made of two collections.
struct MergedCollection {
  Collection collection;  ///< with its local tree; empty if both sides were
  std::vector<Conflict> conflicts = {};
};

namespace detail {

inline void AddConflict(void* to, const MergeConflict& conflict) {
  static_cast<std::vector<Conflict>*>(to)->push_back({PlaceOf(*conflict.merged->item),
                                                      conflict.what, conflict.oursText,
                                                      conflict.theirsText, conflict.tookTheirs});
}

}  // namespace detail

/// The tree with the changes of both sides since `base`, the tree that both have started from; an
/// empty base is none. Empty if the roots are of different types.
inline Merged Merge(const Tree& base, const Tree& ours, const Tree& theirs) {
  Merged merged;
  merged.tree.reset(MergeTrees(base.get(), ours.get(), theirs.get(), TreeParts::kLinks,
                               detail::AddConflict, &merged.conflicts));
  return merged;
}
/// Without a base nothing counts as removed: the tree has what either side has.
inline Merged Merge(const Tree& ours, const Tree& theirs) {
  return Merge(nullptr, ours, theirs);
}

/// The same for collections with their local trees.
inline MergedCollection Merge(const Collection& base, const Collection& ours,
                              const Collection& theirs) {
  MergedCollection merged;
  const detail::ColctLink links[] = {detail::LinkOf(base), detail::LinkOf(ours),
                                     detail::LinkOf(theirs)};
  detail::ColctLink root(MergeTrees(links[0].get(), links[1].get(), links[2].get(),
                                    TreeParts::kWithLocalTrees, detail::AddConflict,
                                    &merged.conflicts));
  if (root) merged.collection.reset(static_cast<CColctNode*>(root->item));
  if (root) root->item->SetRNode(nullptr);
  return merged;
}
inline MergedCollection Merge(const Collection& ours, const Collection& theirs) {
  return Merge(nullptr, ours, theirs);
}

/// The first of the generations, the newest first, from which both sides can have started, by
/// identities and base builds (CanHaveStartedFrom); null for none. They are of the same kind.
inline const Tree* FindBase(std::span<const Tree> generations, const Tree& ours,
                            const Tree& theirs) {
  for (const Tree& base : generations)
    if (CanHaveStartedFrom(base.get(), ours.get(), TreeParts::kLinks) &&
        CanHaveStartedFrom(base.get(), theirs.get(), TreeParts::kLinks))
      return &base;
  return nullptr;
}
inline const Collection* FindBase(std::span<const Collection> generations, const Collection& ours,
                                  const Collection& theirs) {
  const detail::ColctLink a = detail::LinkOf(ours), b = detail::LinkOf(theirs);
  for (const Collection& generation : generations) {
    const detail::ColctLink base = detail::LinkOf(generation);
    if (CanHaveStartedFrom(base.get(), a.get(), TreeParts::kWithLocalTrees) &&
        CanHaveStartedFrom(base.get(), b.get(), TreeParts::kWithLocalTrees))
      return &generation;
  }
  return nullptr;
}

/// The result of SaveMerged.
struct SavedMerge : Saved {
  bool wasMerged = false;  ///< whether the file had changed
  std::vector<Conflict> conflicts = {};
};

/// Saves a tree to the file from which `base` was loaded. If the file holds something else than
/// `options.expected` by now, loads that, merges it into `tree`, and saves the result; `tree` is
/// what was saved then. A file that is gone is made again. On an error `tree` is as it was.
inline Result<SavedMerge> SaveMerged(const FilePath& path, const Tree& base, Tree& tree,
                                     SaveOptions options) {
  constexpr int kMostTries = 10;  // others may save again and again
  SavedMerge result;
  Merged merged;
  for (int tries = 1;; ++tries) {
    Result<Saved> saved = Save(path, merged.tree ? merged.tree : tree, options);
    if (saved) {
      result.losses = std::move(saved->losses);
      result.wasMerged = merged.tree != nullptr;
      result.conflicts = std::move(merged.conflicts);
      if (merged.tree) tree = std::move(merged.tree);
      return result;
    }
    if (saved.error().fault != DocumentFault::kChanged || tries == kMostTries) return saved.error();
    const Result<FileMark> mark = MarkOf(path);
    if (!mark) return mark.error();
    options.expected = *mark;
    merged = {};
    if (!mark->isThere) continue;
    const Result<Tree> theirs = Load<Tree>(path);
    if (!theirs) return theirs.error();
    merged = Merge(base, tree, *theirs);
  }
}

}  // namespace vosmere
