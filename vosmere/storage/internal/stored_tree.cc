// Describes changes of a tree as bytes, and makes them from bytes.
#include "vosmere/storage/internal/stored_tree.h"

#include <algorithm>
#include <memory>
#include <new>

#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere {
namespace {

std::uint64_t Key(const RNode* link) {
  return reinterpret_cast<std::uintptr_t>(link);
}

RNode* ToLink(std::uint64_t key) {
  return reinterpret_cast<RNode*>(static_cast<std::uintptr_t>(key));
}

// What a description says of a link beside its type.
constexpr std::uint64_t kNoItem = 4, kIsLocal = 8;

void Unlink(RNode* link) {
  chain::Unlink(link->parent->firstChild, link);
  link->parent = nullptr;
}

/// What a page refers to; null for other links.
RNode* TargetOf(const RNode* link) {
  if (link->type == NT_FOLDER || !link->item) return nullptr;
  const CUrlProp* const prop = static_cast<const CUrlNode*>(link->item)->GetUrlProp();
  return prop ? prop->GetRefColctRNode() : nullptr;
}

void Refer(RNode* page, RNode* target) {
  CUrlProp* const prop = static_cast<CUrlNode*>(page->item)->GetUrlProp();
  if (!prop) throw std::bad_alloc();
  prop->SetRefColctRNode(target);
}

CColctNode* ColctOf(const RNode* link) {
  return link->type == NT_COLCT ? static_cast<CColctNode*>(link->item) : nullptr;
}

/// Needs no memory, since there may be none: what is still to be freed hangs together by `next`.
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

/// Throws if memory ran out for a text since this was made: items say that nowhere else.
class NoTextIsLost {
 public:
  void Check() const {
    if (LostTexts() != before_) throw std::bad_alloc();
  }

 private:
  const unsigned long before_ = LostTexts();
};

}  // namespace

StoredTree::~StoredTree() {
  if (root_) DeleteAll(root_);
}

void StoredTree::Swap(StoredTree& other) noexcept {
  std::swap(root_, other.root_);
  std::swap(links_, other.links_);
  std::swap(numbers_, other.numbers_);
  std::swap(hasNumbers_, other.hasNumbers_);
  std::swap(owners_, other.owners_);
  std::swap(next_, other.next_);
  std::swap(references_, other.references_);
  unresolved_.swap(other.unresolved_);
}

RNode* StoredTree::Detach() {
  return std::exchange(root_, nullptr);
}

void StoredTree::SetRoot(RNode* root) {
  root_ = root;
  Renumber();
}

void StoredTree::Renumber() {
  EnsureNumbers();
  NumberMap links, numbers, owners;
  References references;
  std::uint64_t next = next_;
  Walk(root_, [&](RNode* link, RNode* parent, bool isLocal) {
    const std::uint64_t known = numbers_.Find(Key(link));
    const std::uint64_t number = known ? known : next++;
    links.Set(number, Key(link));
    numbers.Set(Key(link), number);
    if (isLocal) owners.Set(Key(link), Key(parent));
    references.Set(Key(link), Key(TargetOf(link)));
    return true;
  });
  std::swap(links_, links);
  std::swap(numbers_, numbers);
  std::swap(owners_, owners);
  std::swap(references_, references);
  next_ = next;
}

bool StoredTree::IsNumbered() {
  std::size_t links = 0;
  const auto isKnown = [&](const RNode* link, RNode*, bool) {
    return ++links, NumberOf(link) != 0;
  };
  return Walk(root_, isKnown) && links == count();
}

// Replaying a log needs no numbers of links, so they are gathered when the first change is made.
void StoredTree::EnsureNumbers() {
  if (hasNumbers_) return;
  NumberMap numbers;
  links_.ForEach([&](std::uint64_t number, std::uint64_t link) { numbers.Set(link, number); });
  std::swap(numbers_, numbers);
  hasNumbers_ = true;
}

std::uint64_t StoredTree::NumberOf(const RNode* link) {
  EnsureNumbers();
  return link ? numbers_.Find(Key(link)) : 0;
}

void StoredTree::Learn(RNode* link, std::uint64_t number, RNode* owner) {
  try {
    links_.Set(number, Key(link));
    if (hasNumbers_) numbers_.Set(Key(link), number);
    if (owner) owners_.Set(Key(link), Key(owner));
  } catch (...) {
    Forget(number);
    throw;
  }
  if (number >= next_) next_ = number + 1;
}

void StoredTree::Forget(std::uint64_t number) {
  RNode* const link = LinkOf(number);
  if (!link) return;
  if (hasNumbers_) numbers_.Erase(Key(link));
  owners_.Erase(Key(link));
  references_.Set(Key(link), 0);
  links_.Erase(number);
}

void StoredTree::LearnReference(RNode* link) {
  const RNode* const target = TargetOf(link);
  if (target || !references_.empty()) references_.Set(Key(link), Key(target));
}

std::vector<RNode*> StoredTree::PagesThatReferInto(RNode* top) {
  std::vector<RNode*> pages;
  if (references_.empty()) return pages;
  std::vector<std::uint64_t> found;
  Walk(top, [&](RNode* link, RNode*, bool) {
    references_.PagesOf(Key(link), found);
    return true;
  });
  for (const std::uint64_t page : found)
    if (!IsWithin(ToLink(page), top)) pages.push_back(ToLink(page));
  return pages;
}

// Describing.

void StoredTree::Describe(RNode* link, RNode* parent, bool isLocal, std::string& bytes) {
  ByteWriter writer(bytes);
  writer.Number(NumberOf(link));
  writer.Number(NumberOf(parent));
  writer.Number(static_cast<std::uint64_t>(link->type) | (link->item ? 0 : kNoItem) |
                (isLocal ? kIsLocal : 0));
  WriteFields(*link, *this, bytes);
}

RNode* StoredTree::ReadDescription(ByteReader& reader, std::uint64_t* number, std::uint64_t* parent,
                                   bool* isLocal) {
  *number = reader.Number();
  if (*number == 0) return nullptr;
  *parent = reader.Number();
  const std::uint64_t what = reader.Number();
  *isLocal = what & kIsLocal;
  if (reader.failed() || what > (NT_COLCT | kNoItem | kIsLocal)) return nullptr;
  RNode* const link = NewLink(what & 3, !(what & kNoItem));
  if (!link) return nullptr;
  const std::size_t references = unresolved_.size();
  try {
    const NoTextIsLost texts;
    const bool read = ReadFields(*link, *this, reader);
    texts.Check();
    if (read) return link;
  } catch (...) {
    unresolved_.resize(references);
    DeleteLink(link);
    throw;
  }
  unresolved_.resize(references);
  DeleteLink(link);
  return nullptr;
}

// As the last child, or as the root. Frees the link if it cannot be there.
bool StoredTree::Attach(RNode* link, std::uint64_t number, RNode* parent, bool isLocal) {
  std::unique_ptr<RNode, void (*)(RNode*)> held(link, DeleteLink);
  if (number == 0 || number == UINT64_MAX || LinkOf(number)) return false;
  CColctNode* const colct = parent && isLocal ? ColctOf(parent) : nullptr;
  if (isLocal && (!colct || colct->GetLocRNodeRoot())) return false;
  if (!parent && root_) return false;
  Learn(link, number, isLocal ? parent : nullptr);
  if (isLocal) {
    colct->SetLocRNodeRoot(link);
  } else if (parent) {
    RNTool::InsertAsChild(parent, link);
  } else {
    root_ = link;
  }
  static_cast<void>(held.release());
  return true;
}

bool StoredTree::ReadDescriptions(std::string_view bytes) {
  ByteReader reader(bytes);
  if (links_.size() == 0) hasNumbers_ = false;
  while (!reader.AtEnd()) {
    std::uint64_t number, parent;
    bool isLocal;
    RNode* const link = ReadDescription(reader, &number, &parent, &isLocal);
    if (!link) return false;
    RNode* const above = parent ? LinkOf(parent) : nullptr;
    if (Attach(link, above || !parent ? number : 0, above, isLocal)) continue;
    unresolved_.clear();
    return false;
  }
  return true;
}

void StoredTree::ReferLater(RNode* page, std::uint64_t number) {
  unresolved_.push_back({page, number});
}

void StoredTree::FinishReading() {
  try {
    for (const auto& [page, number] : unresolved_)
      if (RNode* const link = LinkOf(number)) {
        Refer(page, link);
        LearnReference(page);
      }
  } catch (...) {
    for (const auto& [page, number] : unresolved_)
      if (TargetOf(page)) LoseReference(page);
    throw;
  }
  unresolved_.clear();
}

bool StoredTree::ReadReferences(ByteReader& reader) {
  while (!reader.AtEnd()) {
    RNode* const page = LinkOf(reader.Number());
    const std::uint64_t target = reader.Number();
    if (reader.failed() || !page || !page->item || page->type == NT_FOLDER) return false;
    ReferLater(page, target);
  }
  return !reader.failed();
}

void StoredTree::LoseReference(RNode* page) {
  Refer(page, nullptr);
  references_.Set(Key(page), 0);
}

bool StoredTree::DescribeAdding(RNode* parent, RNode* tree, RNode* before, Change* change) {
  const RNode* const previous =
      before ? RNTool::GerPrevNode(before) : chain::Last(parent->firstChild);
  if (!NumberOf(parent) || (previous && !NumberOf(previous))) return false;
  change->kind = ChangeKind::kAdd;
  ByteWriter writer(change->bytes);
  writer.Number(NumberOf(previous));
  Walk(tree, [&](RNode* link, RNode* above, bool isLocal) {
    Learn(link, next_, isLocal ? above : nullptr);
    return true;
  });
  Walk(tree, [&](RNode* link, RNode* above, bool isLocal) {
    Describe(link, link == tree ? parent : above, isLocal, change->bytes);
    LearnReference(link);
    return true;
  });
  return true;
}

void StoredTree::ForgetFrom(std::uint64_t number) {
  for (; number < next_; ++number) Forget(number);
}

bool StoredTree::DescribeRemoving(RNode* top, Change* change, Removal* removal) {
  RNode* const previous = RNTool::GerPrevNode(top);
  bool known = !previous || NumberOf(previous);
  Walk(top, [&](RNode* link, RNode*, bool) { return known = known && NumberOf(link); });
  if (!known) return false;
  change->kind = ChangeKind::kRemove;
  ByteWriter writer(change->bytes);
  writer.Number(NumberOf(previous));
  Walk(top, [&](RNode* link, RNode* parent, bool isLocal) {
    Describe(link, parent, isLocal, change->bytes);
    return true;
  });
  *removal = RemovalOf(top);
  if (!removal->pages.empty()) writer.Number(0);
  for (RNode* const page : removal->pages) {
    writer.Number(NumberOf(page));
    writer.Number(NumberOf(TargetOf(page)));
  }
  return true;
}

StoredTree::Removal StoredTree::RemovalOf(RNode* top) {
  Removal removal;
  removal.pages = PagesThatReferInto(top);
  Walk(top, [&](RNode* link, RNode*, bool) {
    removal.numbers.push_back(NumberOf(link));
    return true;
  });
  return removal;
}

void StoredTree::Forget(const Removal& removal) {
  for (RNode* const page : removal.pages) LoseReference(page);
  for (const std::uint64_t number : removal.numbers) Forget(number);
}

bool StoredTree::DescribeMoving(RNode* link, RNode* parent, RNode* before, Change* change) {
  if (link == before) before = link->next;
  RNode* const previous = RNTool::GerPrevNode(link);
  RNode* next = before ? RNTool::GerPrevNode(before) : chain::Last(parent->firstChild);
  if (next == link) next = previous;  // it stands there already
  if (!NumberOf(link) || !NumberOf(parent) || !NumberOf(link->parent) || IsWithin(parent, link) ||
      (previous && !NumberOf(previous)) || (next && !NumberOf(next)))
    return false;
  change->kind = ChangeKind::kMove;
  ByteWriter writer(change->bytes);
  writer.Number(NumberOf(link));
  for (RNode* const place : {link->parent, previous, parent, next}) writer.Number(NumberOf(place));
  return true;
}

void StoredTree::TakeFields(RNode* link, FieldValues* values) {
  TakeFieldValues(*link, *this, values);
}

bool StoredTree::DescribeFields(RNode* link, const FieldValues& before, FieldValues* after,
                                Change* change) {
  TakeFields(link, after);
  change->kind = ChangeKind::kFields;
  ByteWriter writer(change->bytes);
  writer.Number(NumberOf(link));
  LearnReference(link);
  return WriteChangedFields(before, *after, change->bytes);
}

bool StoredTree::TakeOrder(RNode* folder, std::vector<std::uint64_t>* order) {
  order->clear();
  for (RNode* const link : chain::Cells(folder->firstChild)) order->push_back(NumberOf(link));
  return std::find(order->begin(), order->end(), 0u) == order->end() && NumberOf(folder);
}

bool StoredTree::DescribeSorting(RNode* folder, const std::vector<std::uint64_t>& before,
                                 Change* change) {
  std::vector<std::uint64_t> after;
  if (!TakeOrder(folder, &after) || after == before) return false;
  change->kind = ChangeKind::kSort;
  ByteWriter writer(change->bytes);
  writer.Number(NumberOf(folder));
  writer.Number(before.size());
  for (const std::uint64_t number : before) writer.Number(number);
  for (const std::uint64_t number : after) writer.Number(number);
  return true;
}

// Making changes.

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

/// Without its numbers, which still lead to it.
void StoredTree::CutOff(RNode* top) {
  if (RNode* const owner = ToLink(owners_.Find(Key(top))))
    ColctOf(owner)->SetLocRNodeRoot(nullptr);
  else
    Unlink(top);
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
  RNode* const owner = top ? ToLink(owners_.Find(Key(top))) : nullptr;
  if (!top || (!top->parent && !owner)) return "what is to be removed is not there";
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

RNode* StoredTree::OwnerOf(RNode* link) {
  return link->parent ? link->parent : ToLink(owners_.Find(Key(link)));
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
