// Turns logged changes into notifications.
#include "vosmere/storage/internal/change_message.h"

#include <memory>
#include <new>

#include "vosmere/tree/url_node.h"

namespace vosmere {
namespace {

// The kinds of notification: folders from 1000, collections from 2000, pages from 3000.
constexpr LONG kCreate = 0, kModify = 1, kDelete = 2, kMove = 3;

LONG BaseOf(const RNode& link) {
  return link.type == NT_FOLDER ? 1000 : link.type == NT_COLCT ? 2000 : 3000;
}

LONG EventOf(ChangeKind kind, bool undone) {
  switch (kind) {
    case ChangeKind::kAdd: return undone ? kDelete : kCreate;
    case ChangeKind::kRemove: return undone ? kCreate : kDelete;
    case ChangeKind::kMove: return kMove;
    default: return kModify;
  }
}

void Describe(CVSMNotifyMsg& message, const RNode& link) {
  if (!link.item) return;
  message.SetName(link.item->GetName());
  message.SetDesc(link.item->GetDescription());
  message.SetUUID(link.item->GetUUID());
  if (link.type != NT_FOLDER) message.SetLink(static_cast<const CUrlNode*>(link.item)->GetUrl());
}

/// The numbers of the places that a change names: where the item is after it, and before it.
struct Places {
  std::uint64_t parent = 0, oldParent = 0;
};

Places PlacesOf(ChangeKind kind, std::string_view bytes, bool undone) {
  ByteReader reader(bytes);
  reader.Number();
  Places places;
  if (kind == ChangeKind::kAdd || kind == ChangeKind::kRemove) {
    reader.Number();
    places.parent = reader.Number();
  } else if (kind == ChangeKind::kMove) {
    places.oldParent = reader.Number();
    reader.Number();
    places.parent = reader.Number();
    if (undone) std::swap(places.parent, places.oldParent);
  }
  return places;
}

}  // namespace

OwnedMessage MessageOf(StoredTree& tree, ChangeKind kind, std::string_view bytes, bool undone) {
  OwnedMessage message(CVSMNotifyMsg::New(), CVSMNotifyMsg::Delete);
  if (!message) throw std::bad_alloc();
  const unsigned long lostBefore = LostTexts();
  const std::unique_ptr<RNode, void (*)(RNode*)> copy(tree.CopyOfSubject(kind, bytes), DeleteLink);
  RNode* const link = copy ? copy.get() : tree.SubjectOf(kind, bytes);
  message->SetNotifyType(EventOf(kind, undone) + (link ? BaseOf(*link) : 3000));
  if (link) Describe(*message, *link);
  const Places places = PlacesOf(kind, bytes, undone);
  const RNode* const parent = places.parent   ? tree.LinkOf(places.parent)
                              : link && !copy ? link->parent
                                              : nullptr;
  if (parent && parent->item) {
    message->SetParent(parent->item->GetName());
    message->SetParentID(parent->item->GetUUID());
  }
  const RNode* const old = places.oldParent ? tree.LinkOf(places.oldParent) : nullptr;
  if (old && old->item) {
    message->SetOldParent(old->item->GetName());
    message->SetOldParentID(old->item->GetUUID());
  }
  if (LostTexts() != lostBefore) throw std::bad_alloc();
  return message;
}

}  // namespace vosmere
