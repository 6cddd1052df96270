#include "vosmere/merge/internal/merge_fields.h"

#include <set>

#include "vosmere/base/internal/bytes.h"
#include "vosmere/base/internal/wide_string.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {
namespace {

using Tags = std::vector<std::u16string>;

Tags TagsOf(std::string_view bytes) {
  Tags tags;
  ByteReader reader(bytes);
  for (std::uint64_t left = reader.Number(); left > 0 && !reader.failed(); --left)
    tags.push_back(ToU16(reader.Text()));
  return tags;
}

std::set<std::u16string> SetOf(const Tags& tags) {
  std::set<std::u16string> set;
  for (const std::u16string& tag : tags) set.insert(Folded(tag));
  return set;
}

/// Ours without those that theirs has removed from the base, then those that theirs has added.
std::string MergedTags(std::string_view base, std::string_view ours, std::string_view theirs) {
  const auto inBase = SetOf(TagsOf(base)), inOurs = SetOf(TagsOf(ours)),
             inTheirs = SetOf(TagsOf(theirs));
  Tags merged;
  for (std::u16string& tag : TagsOf(ours))
    if (inTheirs.contains(Folded(tag)) || !inBase.contains(Folded(tag)))
      merged.push_back(std::move(tag));
  for (std::u16string& tag : TagsOf(theirs))
    if (!inOurs.contains(Folded(tag)) && !inBase.contains(Folded(tag)))
      merged.push_back(std::move(tag));
  std::string bytes;
  ByteWriter writer(bytes);
  writer.Number(merged.size());
  for (const std::u16string& tag : merged) writer.Text(Units(tag));
  return bytes;
}

LONG NumberIn(std::string_view bytes) {
  return ByteReader(bytes).Signed();
}

std::string BytesOf(LONG number) {
  std::string bytes;
  ByteWriter(bytes).Signed(number);
  return bytes;
}

}  // namespace

std::uint64_t FieldMerge::NumberOf(const RNode* link) {
  if (numbers_.empty())
    for (std::uint32_t i = 0; i < table_.items.size(); ++i)
      for (const RNode* const at : table_.items[i].links) numbers_.emplace(at, i + 1);
  const auto found = numbers_.find(link);
  return found == numbers_.end() ? 0 : found->second;
}

void FieldMerge::Take(const MergeItem& item, Side side) {
  if (taken_[side] == item.links[side]) return;
  TakeFieldValues(*item.links[side], *this, &values_[side]);
  taken_[side] = item.links[side];
}

bool FieldMerge::HaveSameContent(Side a, Side b) const {
  for (std::size_t i = 0; i < values_[a].fields.size(); ++i) {
    const FieldRule& rule = RuleOf(values_[a].fields[i].number);
    if (rule.IsContent() && !SameValue(rule, Value(a, i), Value(b, i))) return false;
  }
  return true;
}

bool FieldMerge::IsChanged(const MergeItem& item, Side side) {
  Take(item, kBase);
  Take(item, side);
  const bool isRevived =
      item.links[kBase]->item->IsDeleted() && !item.links[side]->item->IsDeleted();
  return isRevived || !HaveSameContent(kBase, side);
}

void FieldMerge::Fill(std::uint32_t number, RNode* made) {
  TakeFieldValues(*made, *this, &usual_);
  const std::string fields = Merged(number);
  ByteReader reader(fields);
  ReadFields(*made, *this, reader);
}

/// The fields that are not those of a new item.
std::string FieldMerge::Merged(std::uint32_t number) {
  const MergeItem& item = table_.items[number];
  number_ = number;
  hasBase_ = item.IsIn(kBase);
  saidTimes_ = 0;
  const Side only = item.IsIn(kOurs) ? kOurs : item.IsIn(kTheirs) ? kTheirs : kBase;
  for (const Side side : {kBase, kOurs, kTheirs})
    if (item.IsIn(side)) Take(item, side);
  std::string bytes;
  ByteWriter writer(bytes);
  for (std::size_t i = 0; i < values_[only].fields.size(); ++i) {
    const unsigned field = values_[only].fields[i].number;
    const std::string value =
        item.IsInBoth() ? MergedValue(RuleOf(field), i) : std::string(Value(only, i));
    if (value == usual_.Bytes(i)) continue;
    writer.Number(field);
    writer.Raw(value);
  }
  writer.Number(0);
  return bytes;
}

std::string FieldMerge::MergedValue(const FieldRule& rule, std::size_t field) {
  if (rule.form == FieldForm::kTime) return MergedTime(rule, field);
  if (rule.number == kSetTimesField) return BytesOf(saidTimes_);
  if (rule.number == kDeletedField) return MergedMark(field);
  return OnBothChanged(rule, field);
}

// A time that a side was given is worth more than one that it made up.
std::string FieldMerge::MergedTime(const FieldRule& rule, std::size_t field) {
  const MergeItem& item = table_.items[number_];
  const bool ours = IsTimeSaid(*item.links[kOurs], rule.number);
  const bool theirs = IsTimeSaid(*item.links[kTheirs], rule.number);
  if (ours || theirs) saidTimes_ |= 1 << (rule.number - kAddedField);
  return ours == theirs ? OnBothChanged(rule, field)
                        : std::string(Value(ours ? kOurs : kTheirs, field));
}

// A deleted mark travels, unless the other side has changed the item, or something in it.
std::string FieldMerge::MergedMark(std::size_t field) {
  const MergeItem& item = table_.items[number_];
  const bool ours = NumberIn(Value(kOurs, field)), theirs = NumberIn(Value(kTheirs, field));
  if (ours == theirs) return BytesOf(ours);
  const Side unmarked = ours ? kTheirs : kOurs, marked = ours ? kOurs : kTheirs;
  if (hasBase_ && NumberIn(Value(kBase, field))) return BytesOf(false);  // one took the mark off
  const bool isKept =
      hasBase_ ? item.isTouched[unmarked] : IsNewer(*item.links[unmarked], *item.links[marked]);
  if (isKept) AddConflict(RuleOf(kDeletedField), field, unmarked == kTheirs);
  return BytesOf(!isKept);
}

std::string FieldMerge::OnBothChanged(const FieldRule& rule, std::size_t field) {
  const std::string_view base = hasBase_ ? Value(kBase, field) : std::string_view();
  const std::string_view ours = Value(kOurs, field), theirs = Value(kTheirs, field);
  if (ours == theirs || (hasBase_ && theirs == base)) return std::string(ours);
  if (hasBase_ && ours == base) return std::string(theirs);
  const MergeItem& item = table_.items[number_];
  bool tookTheirs = IsNewer(*item.links[kTheirs], *item.links[kOurs]);
  switch (rule.onConflict) {
    case OnConflict::kUnion: return MergedTags(base, ours, theirs);
    case OnConflict::kEarlier: tookTheirs = NumberIn(theirs) < NumberIn(ours); break;
    case OnConflict::kLater: tookTheirs = NumberIn(theirs) > NumberIn(ours); break;
    case OnConflict::kLeast:  // but the empty one, which is the least, only if both are
      tookTheirs = (theirs < ours && theirs.size() > 1) || ours.size() <= 1;
      break;
    case OnConflict::kNewer:
      if (!SameValue(rule, ours, theirs)) AddConflict(rule, field, tookTheirs);
      break;
    case OnConflict::kQuietly: break;
  }
  return std::string(tookTheirs ? theirs : ours);
}

void FieldMerge::AddConflict(const FieldRule& rule, std::size_t field, bool tookTheirs) {
  table_.conflicts.push_back({number_, rule.name, ValueToUtf8(rule, Value(kOurs, field)),
                              ValueToUtf8(rule, Value(kTheirs, field)), tookTheirs});
}

void FieldMerge::FinishReferences(const std::vector<RNode*>& made) {
  for (const auto& [page, number] : references_)
    if (RNode* const link = made[number - 1])
      static_cast<CUrlNode*>(page->item)->GetUrlProp()->SetRefColctRNode(link);
}

}  // namespace vosmere
