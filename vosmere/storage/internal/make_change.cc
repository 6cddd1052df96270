// Makes changes of a tree from bytes.
#include <algorithm>
#include <memory>

#include "vosmere/storage/internal/links.h"
#include "vosmere/storage/internal/stored_tree.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere {

// What is still to be freed hangs together by `next`, since there may be no memory.
void DeleteAll(RNode* top) {
  RNode* rest = nullptr;
  const auto add = [&](RNode* link) {
    link->next = rest;
    rest = link;
  };
  for (add(top); rest;) {
    RNode* const link = rest;
    rest = link->next;
    for (RNode* const child : chain::Cells(link->firstChild)) add(child);
    if (RNode* const local = LocalRootOf(link)) add(local);
    DeleteLink(link);
  }
}

bool StoredTree::Make(ChangeKind kind, std::string_view bytes, bool undone, const char** problem) {
  switch (kind) {
    case ChangeKind::kAdd: *problem = undone ? MakeRemove(bytes) : MakeAdd(bytes); break;
    case ChangeKind::kRemove: *problem = undone ? MakeAdd(bytes) : MakeRemove(bytes); break;
    case ChangeKind::kMove: *problem = MakeMove(bytes, undone); break;
    case ChangeKind::kFields: *problem = MakeFields(bytes, undone); break;
    case ChangeKind::kSort: *problem = MakeSort(bytes, undone); break;
    default: *problem = "it is of a kind that is not known"; break;
  }
  return !*problem;
}

/// Puts a detached link right after the sibling `previous`, 0 for the first place.
const char* StoredTree::Place(RNode* link, std::uint64_t parent, std::uint64_t previous) {
  RNode* const above = LinkOf(parent);
  RNode* const sibling = previous ? LinkOf(previous) : nullptr;
  if (!above || (previous && (!sibling || sibling->parent != above)))
    return "the place of an item is not there";
  if (sibling)
    RNTool::InsertAfter(sibling, link);
  else
    RNTool::InsertAsHeadChild(above, link);
  return nullptr;
}

/// A whole tree or, when memory runs out, nothing.
const char* StoredTree::MakeAdd(std::string_view bytes) {
  RNode* top = nullptr;
  std::vector<std::uint64_t> numbers;
  try {
    return MakeAdd(bytes, &top, numbers);
  } catch (...) {
    if (top) CutOff(top);
    for (const std::uint64_t number : numbers) Forget(number);
    if (top) DeleteAll(top);
    throw;
  }
}

const char* StoredTree::MakeAdd(std::string_view bytes, RNode** top,
                                std::vector<std::uint64_t>& numbers) {
  unresolved_.clear();
  ByteReader reader(bytes);
  const std::uint64_t previous = reader.Number();
  while (!reader.AtEnd()) {
    std::uint64_t number, parent;
    bool isLocal;
    numbers.push_back(0);
    RNode* const link = ReadDescription(reader, &number, &parent, &isLocal);
    if (!link && number == 0 && *top && ReadReferences(reader)) break;
    if (!link) return "an item cannot be read";
    numbers.back() = number;
    RNode* const above = LinkOf(parent);
    if (!Attach(link, above ? number : 0, above, isLocal))
      return "an item has no place, or is there already";
    if (*top) continue;
    *top = link;
    if (isLocal) continue;
    Unlink(link);
    if (const char* const problem = Place(link, parent, previous)) {
      RNTool::InsertAsChild(above, link);  // where it can be found and freed
      return problem;
    }
  }
  FinishReading();
  return reader.failed() || !*top ? "it does not say what to add" : nullptr;
}

// What a file says to be there, and is not, must not be freed; nor may anything be freed that the
// file does not say.
const char* StoredTree::MakeRemove(std::string_view bytes) {
  ByteReader reader(bytes);
  reader.Number();
  std::vector<std::uint64_t> numbers;
  while (!reader.AtEnd()) {
    std::uint64_t number, parent;
    bool isLocal;
    RNode* const described = ReadDescription(reader, &number, &parent, &isLocal);
    unresolved_.clear();
    if (!described && number == 0 && !reader.failed()) break;
    if (!described) return "an item cannot be read";
    DeleteLink(described);
    numbers.push_back(number);
  }
  RNode* const top = numbers.empty() ? nullptr : LinkOf(numbers[0]);
  if (!top || !OwnerOf(top)) return "what is to be removed is not there";
  std::size_t at = 0;
  const bool same = Walk(top, [&](RNode* link, RNode*, bool) {
    return at < numbers.size() && LinkOf(numbers[at++]) == link;
  });
  if (!same || at != numbers.size()) return "something else is there to be removed";
  const std::vector<RNode*> pages = PagesThatReferInto(top);
  CutOff(top);
  Forget({pages, std::move(numbers)});
  DeleteAll(top);
  return nullptr;
}

bool StoredTree::IsWithin(RNode* link, RNode* top) {
  while (link && link != top) link = OwnerOf(link);
  return link == top;
}

const char* StoredTree::MakeMove(std::string_view bytes, bool undone) {
  ByteReader reader(bytes);
  RNode* const link = LinkOf(reader.Number());
  std::uint64_t places[4];
  for (std::uint64_t& place : places) place = reader.Number();
  const std::uint64_t parent = places[undone ? 0 : 2], previous = places[undone ? 1 : 3];
  RNode* const above = LinkOf(parent);
  if (reader.failed() || !link || !link->parent || !above)
    return "what is to be moved is not there";
  if (IsWithin(above, link)) return "an item would come to stand in itself";
  RNode* const sibling = previous ? LinkOf(previous) : nullptr;
  if (previous && (!sibling || sibling->parent != above || sibling == link))
    return "the place of an item is not there";
  Unlink(link);
  return Place(link, parent, previous);
}

const char* StoredTree::MakeFields(std::string_view bytes, bool undone) {
  ByteReader reader(bytes);
  RNode* const link = LinkOf(reader.Number());
  if (!link) return "what is to be changed is not there";
  const NoTextIsLost texts;
  const bool read = ReadChangedFields(*link, *this, reader, undone) && reader.AtEnd();
  LearnReference(link);
  texts.Check();
  return read ? nullptr : "a field cannot be read";
}

const char* StoredTree::MakeSort(std::string_view bytes, bool undone) {
  ByteReader reader(bytes);
  RNode* const folder = LinkOf(reader.Number());
  const std::uint64_t count = reader.Number();
  if (!folder || count > bytes.size()) return "what is to be sorted is not there";
  std::vector<RNode*> before, after;
  for (auto* order : {&before, &after})
    for (std::uint64_t i = 0; i < count; ++i) order->push_back(LinkOf(reader.Number()));
  if (undone) before.swap(after);
  std::size_t at = 0;
  bool same = !reader.failed();
  for (RNode* const link : chain::Cells(folder->firstChild))
    same = same && at < count && before[at++] == link;
  std::vector<RNode*> sortedBefore = before, sortedAfter = after;
  std::sort(sortedBefore.begin(), sortedBefore.end());
  std::sort(sortedAfter.begin(), sortedAfter.end());
  if (!same || at != count || sortedBefore != sortedAfter)
    return "something else is there to be sorted";
  folder->firstChild = nullptr;
  for (RNode* const link : after) chain::Append(folder->firstChild, link);
  return nullptr;
}

RNode* StoredTree::SubjectOf(ChangeKind kind, std::string_view bytes) {
  ByteReader reader(bytes);
  if (kind == ChangeKind::kAdd || kind == ChangeKind::kRemove) reader.Number();
  return LinkOf(reader.Number());
}

RNode* StoredTree::CopyOfSubject(ChangeKind kind, std::string_view bytes) {
  if (kind != ChangeKind::kAdd && kind != ChangeKind::kRemove) return nullptr;
  ByteReader reader(bytes);
  reader.Number();
  std::uint64_t number, parent;
  bool isLocal;
  RNode* const copy = ReadDescription(reader, &number, &parent, &isLocal);
  unresolved_.clear();
  return copy;
}

}  // namespace vosmere
