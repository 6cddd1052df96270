// Merging the fields of an item.
#pragma once

#include <unordered_map>
#include <vector>

#include "vosmere/merge/internal/merge_table.h"

namespace vosmere {

class FieldMerge : private LinkLookup {
 public:
  explicit FieldMerge(MergeTable& table) : table_(table) {}

  /// Whether a side has changed what the user puts in, or has taken the deleted mark off.
  bool IsChanged(const MergeItem& item, Side side);

  /// Sets the fields of `made`, a new link of the same type, and lists the conflicts.
  void Fill(std::uint32_t number, RNode* made);
  /// Once all are made: leads references to the links in the place of the old ones.
  void FinishReferences(const std::vector<RNode*>& made);

 private:
  struct Reference {
    RNode* page;
    std::uint64_t number;
  };

  std::uint64_t NumberOf(const RNode* link) override;
  RNode* LinkOf(std::uint64_t) override { return nullptr; }
  void ReferLater(RNode* page, std::uint64_t number) override {
    references_.push_back({page, number});
  }

  void Take(const MergeItem& item, Side side);
  bool HaveSameContent(Side a, Side b) const;
  std::string Merged(std::uint32_t number);
  std::string MergedValue(const FieldRule& rule, std::size_t field);
  std::string MergedTime(const FieldRule& rule, std::size_t field);
  std::string MergedMark(std::size_t field);
  std::string OnBothChanged(const FieldRule& rule, std::size_t field);
  void AddConflict(const FieldRule& rule, std::size_t field, bool tookTheirs);
  std::string_view Value(Side side, std::size_t field) const { return values_[side].Bytes(field); }

  MergeTable& table_;
  FieldValues values_[3], usual_;
  const RNode* taken_[3] = {};  // whose values these are
  std::uint32_t number_ = 0;    // of the item that is merged
  bool hasBase_ = false;
  LONG saidTimes_ = 0;
  std::unordered_map<const RNode*, std::uint32_t> numbers_;
  std::vector<Reference> references_;
};

}  // namespace vosmere
