// The numbers of a tree's links, and how they and their changes are described as bytes.
#include "vosmere/storage/internal/stored_tree.h"

#include <algorithm>
#include <memory>
#include <new>

#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/storage/internal/links.h"
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

RNode* StoredTree::OwnerOf(RNode* link) {
  return link->parent ? link->parent : ToLink(owners_.Find(Key(link)));
}

/// Without its numbers, which still lead to it.
void StoredTree::CutOff(RNode* top) {
  if (RNode* const colct = ToLink(owners_.Find(Key(top))))
    ColctOf(colct)->SetLocRNodeRoot(nullptr);
  else
    Unlink(top);
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

}  // namespace vosmere
