#include "vosmere/merge/internal/merge_table.h"

#include "vosmere/merge/internal/item_matcher.h"
#include "vosmere/tree/base_node.h"

namespace vosmere {

RNode* MergeItem::Link() const {
  return links[kOurs] ? links[kOurs] : links[kTheirs] ? links[kTheirs] : links[kBase];
}

namespace {

/// Gives each item of `b` the number that the same item of `a` has.
void TakeNumbers(const ItemMatcher& matcher, const std::vector<std::uint32_t>& a,
                 std::vector<std::uint32_t>& b) {
  for (std::size_t i = 0; i < b.size(); ++i)
    if (matcher.InA(i) != kNoItem) b[i] = a[matcher.InA(i)];
}

void MatchWithBase(const TreeOutline& base, const TreeOutline& side,
                   const std::vector<std::uint32_t>& inBase, std::vector<std::uint32_t>& inSide) {
  ItemMatcher matcher(base.items, side.items);
  matcher.MatchStates();
  TakeNumbers(matcher, inBase, inSide);
}

enum class Looking { kForStates, kForAdditions };

/// Looks in `b`, among what is not known from the base, for items of `a`: for those of the base
/// that b seems to lack, because one side has moved what the other has changed, or for those that
/// are not known from the base either.
void MatchSides(const TreeOutline& a, const TreeOutline& b, const std::vector<std::uint32_t>& inA,
                std::vector<std::uint32_t>& inB, std::size_t countOfBase, Looking looking) {
  ItemMatcher matcher(a.items, b.items);
  std::vector<std::size_t> ofBase(countOfBase, kNoItem);
  for (std::size_t i = 0; i < inB.size(); ++i)
    if (inB[i] < countOfBase) {
      ofBase[inB[i]] = i;
      matcher.Pair(kNoItem, i);
    }
  for (std::size_t i = 0; i < inA.size(); ++i) {
    const bool isOfBase = inA[i] < countOfBase;
    if (isOfBase && ofBase[inA[i]] != kNoItem)
      matcher.Pair(i, ofBase[inA[i]]);
    else if (isOfBase != (looking == Looking::kForStates))
      matcher.Pair(i, kNoItem);
  }
  looking == Looking::kForStates ? matcher.MatchStates() : matcher.MatchAdditions();
  TakeNumbers(matcher, inA, inB);
}

/// New numbers for those that have none.
void NumberRest(std::vector<std::uint32_t>& numbers, std::uint32_t& next) {
  for (std::uint32_t& number : numbers)
    if (number == kNobody) number = next++;
}

}  // namespace

MergeTable::MergeTable(const RNode* base, const RNode* ours, const RNode* theirs, TreeParts parts) {
  // A note has no address, and two that were added with the same name are two: their texts tell.
  const TreeOutline outlines[] = {{base, parts, NotesBy::kName},
                                  {ours, parts, NotesBy::kText},
                                  {theirs, parts, NotesBy::kText}};
  std::uint32_t next = 0;
  for (const Side side : {kBase, kOurs, kTheirs})
    inOrder[side].assign(outlines[side].links.size(), kNobody);
  NumberRest(inOrder[kBase], next);
  const std::uint32_t countOfBase = next;
  if (base) {
    MatchWithBase(outlines[kBase], {ours, parts, NotesBy::kName}, inOrder[kBase], inOrder[kOurs]);
    MatchWithBase(outlines[kBase], {theirs, parts, NotesBy::kName}, inOrder[kBase],
                  inOrder[kTheirs]);
  }
  const auto match = [&](Side a, Side b, Looking looking) {
    MatchSides(outlines[a], outlines[b], inOrder[a], inOrder[b], countOfBase, looking);
  };
  if (base) match(kTheirs, kOurs, Looking::kForStates);
  if (base) match(kOurs, kTheirs, Looking::kForStates);
  NumberRest(inOrder[kOurs], next);
  match(kOurs, kTheirs, Looking::kForAdditions);
  NumberRest(inOrder[kTheirs], next);
  items.resize(next);
  for (const Side side : {kBase, kOurs, kTheirs}) AddSide(side, outlines[side]);
}

void MergeTable::AddSide(Side side, const TreeOutline& outline) {
  for (std::size_t i = 0; i < outline.links.size(); ++i) {
    MergeItem& item = items[inOrder[side][i]];
    item.links[side] = outline.links[i];
    item.isLocal = outline.items[i].kind >= kLocalRootKind;
    if (i > 0) item.parents[side] = inOrder[side][outline.items[i].parent];
  }
}

bool IsNewer(const RNode& link, const RNode& than) {
  const int version = link.item->GetVersion(), old = than.item->GetVersion();
  if (version != old) return version > old;
  if (!IsTimeSaid(link, kModifiedField) || !IsTimeSaid(than, kModifiedField)) return false;
  LONG modified = 0, before = 0;
  link.item->GetNodeStat()->GetStatTime(nullptr, &modified, nullptr);
  than.item->GetNodeStat()->GetStatTime(nullptr, &before, nullptr);
  return modified > before;
}

}  // namespace vosmere
