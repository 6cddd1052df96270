// StoredTree, a tree whose links have numbers, with changes that can be done and undone.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vosmere/collections/internal/stored_fields.h"
#include "vosmere/collections/internal/whole_tree.h"
#include "vosmere/storage/internal/number_map.h"
#include "vosmere/storage/internal/references.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// The kinds of change. The values are used in files and never change.
enum class ChangeKind : unsigned char { kAdd = 1, kRemove = 2, kMove = 3, kFields = 4, kSort = 5 };

/// A change as bytes, with everything that is needed to do and undo it.
struct Change {
  ChangeKind kind = ChangeKind::kAdd;
  std::string bytes;
};

/// New links get rising numbers. A number is never used twice and never 0. The root has one too.
///
/// Links are described one after the other: number, number of the parent, type, fields. A link
/// comes after its parent and its previous siblings; the local tree of a collection comes directly
/// after the collection.
///
/// A page that refers to a link loses the reference when that is removed, and has it again when the
/// link comes back. So the description of what is removed ends with the references to it, if there
/// are any: a 0, then the numbers of each page and of what it refers to.
class StoredTree : private LinkLookup {
 public:
  StoredTree() = default;
  StoredTree(const StoredTree&) = delete;
  StoredTree& operator=(const StoredTree&) = delete;
  ~StoredTree();

  RNode* root() const { return root_; }
  std::size_t count() const { return links_.size(); }
  std::uint64_t nextNumber() const { return next_; }
  void SetNextNumber(std::uint64_t next) { next_ = next; }

  /// Takes ownership of a tree without numbers.
  void SetRoot(RNode* root);
  /// Exchanges trees and numbers.
  void Swap(StoredTree& other) noexcept;
  RNode* Detach();

  // Checkpoints.

  /// Calls `use(bytes)` with the descriptions of some links at a time, until it returns false.
  template <class Use>
  bool DescribeAll(Use use) {
    std::string bytes;
    return Walk(root_,
                [&](RNode* link, RNode* parent, bool isLocal) {
                  Describe(link, parent, isLocal, bytes);
                  if (bytes.size() < kDescribedAtOnce) return true;
                  const bool go = use(std::string_view(bytes));
                  bytes.clear();
                  return go;
                }) &&
           (bytes.empty() || use(std::string_view(bytes)));
  }
  /// Reads such descriptions. False at the first invalid one; the links before it stay.
  bool ReadDescriptions(std::string_view bytes);
  /// Must be called when all of them have been read.
  void FinishReading();

  // Describe a change that is about to be made to the tree. They return false, with nothing
  // changed, if a link that is involved has no number. Whatever throws has changed nothing but the
  // numbers that DescribeAdding gave.

  bool DescribeAdding(RNode* parent, RNode* tree, RNode* before, Change* change);
  bool DescribeMoving(RNode* link, RNode* parent, RNode* before, Change* change);
  /// Drops this number and all later ones: those of links that are not added after all.
  void ForgetFrom(std::uint64_t number);

  /// What has to be forgotten of a link that is removed, and of all below it.
  struct Removal {
    std::vector<RNode*> pages;  // that refer to something in it
    std::vector<std::uint64_t> numbers;
  };
  bool DescribeRemoving(RNode* link, Change* change, Removal* removal);
  /// Needs no memory.
  void Forget(const Removal& removal);

  /// Describes how the fields of a link have changed since `before`. False if they have not.
  bool DescribeFields(RNode* link, const FieldValues& before, FieldValues* after, Change* change);
  void TakeFields(RNode* link, FieldValues* values);
  bool TakeOrder(RNode* folder, std::vector<std::uint64_t>* order);
  bool DescribeSorting(RNode* folder, const std::vector<std::uint64_t>& before, Change* change);

  /// Does a change, or undoes it. False, with the reason, if it does not fit the tree. If it
  /// throws, nothing has changed, except that some of the fields that change are as they are
  /// afterwards.
  bool Make(ChangeKind kind, std::string_view bytes, bool undone, const char** problem);

  /// Whether every link of the tree has a number, and every number a link.
  bool IsNumbered();
  /// Gives numbers to links that have none, and drops the numbers of links that are gone.
  void Renumber();

  std::uint64_t NumberOf(const RNode* link) override;
  RNode* LinkOf(std::uint64_t number) override {
    return reinterpret_cast<RNode*>(links_.Find(number));
  }
  /// The link that a change is about; null if it is not in the tree.
  RNode* SubjectOf(ChangeKind kind, std::string_view bytes);
  /// A copy of the link that was added or removed, which the caller frees with DeleteLink; null for
  /// other changes.
  RNode* CopyOfSubject(ChangeKind kind, std::string_view bytes);

  /// Calls `visit(link, parent, isLocal)` for a link and everything below it, with the local trees
  /// of collections, parents first, until it returns false.
  template <class Visit>
  static bool Walk(RNode* top, Visit visit) {
    return WalkWhole(top, true, visit);
  }

 private:
  static constexpr std::size_t kDescribedAtOnce = std::size_t{32} * 1024;

  void ReferLater(RNode* page, std::uint64_t number) override;
  void Describe(RNode* link, RNode* parent, bool isLocal, std::string& bytes);
  RNode* ReadDescription(ByteReader& reader, std::uint64_t* number, std::uint64_t* parent,
                         bool* isLocal);
  bool Attach(RNode* link, std::uint64_t number, RNode* parent, bool isLocal);
  void Learn(RNode* link, std::uint64_t number, RNode* owner);
  void Forget(std::uint64_t number);
  void LearnReference(RNode* link);
  std::vector<RNode*> PagesThatReferInto(RNode* top);
  void LoseReference(RNode* page);
  Removal RemovalOf(RNode* top);
  bool ReadReferences(ByteReader& reader);
  RNode* OwnerOf(RNode* link);
  bool IsWithin(RNode* link, RNode* top);

  const char* MakeAdd(std::string_view bytes);
  const char* MakeAdd(std::string_view bytes, RNode** top, std::vector<std::uint64_t>& numbers);
  void CutOff(RNode* top);
  const char* MakeRemove(std::string_view bytes);
  const char* MakeMove(std::string_view bytes, bool undone);
  const char* MakeFields(std::string_view bytes, bool undone);
  const char* MakeSort(std::string_view bytes, bool undone);
  const char* Place(RNode* link, std::uint64_t parent, std::uint64_t previous);
  void EnsureNumbers();

  RNode* root_ = nullptr;
  NumberMap links_;    // number to link
  NumberMap numbers_;  // link to number, once that is asked for
  bool hasNumbers_ = true;
  NumberMap owners_;  // root of a local tree to the link of its collection
  std::uint64_t next_ = 1;
  References references_;
  std::vector<std::pair<RNode*, std::uint64_t>> unresolved_;  // pages that were read, and targets
};

}  // namespace vosmere
