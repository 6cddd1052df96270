// Which items belong to which collections.
#include "vosmere/collections/colct_item_ids_document.h"

#include "tools/kind.h"
#include "tools/kinds/items.h"

namespace vosmere::tool {
namespace {

bool IsThere(const WChar* id) {
  return id && *id;
}

/// Whether only the collections are in it.
bool IsColctOnly(RColctItemID* head) {
  for (const RColctItemID* cell = head; cell; cell = cell->next)
    if (IsThere(cell->item->GetItemID())) return false;
  return head != nullptr;
}

template <bool isColctOnly>
Record ItemContent(const CColctItemID& id) {
  Record item{"item"};
  item.Add("name", TextOf(id.GetName()));
  item.Add("colctId", TextOf(id.GetColctID()), kOnLine);
  item.Add("id", TextOf(id.GetItemID()), kOnLine);
  if (!IsThere(id.GetColctID()) || (!isColctOnly && !IsThere(id.GetItemID())))
    item.leftOut = "an entry without both identities is left out";
  return item;
}

Record ListContent(RColctItemID* head) {
  Record record{"items"};
  if (IsColctOnly(head))
    AddChildren<ItemContent<true>>(record, head);
  else
    AddChildren<ItemContent<false>>(record, head);
  return record;
}

void Give(CWriteColctItemID& writer, RColctItemID* head) {
  writer.SetRColctItemIDHead(head);
  if (IsColctOnly(head)) writer.SetColctOnly();
}

using LoadedList = LoadedAs<ItemList<RColctItemID>, ListContent, CWriteColctItemID, Give>;

constexpr Word kWords[] = {
    {"", "colctitem", "version"},
    {"*", "item", "= colctid id", true},
};

constexpr Count kCounts[] = {{"item", "items"}};

}  // namespace

const Kind kColctItemIds = {
    "colctitem",
    "items of collections",
    kCounts,
    {.words = kWords},
    LoadedList::LoadList<CReadColctItemID, &CReadColctItemID::DetachRColctItemIDHead>};

}  // namespace vosmere::tool
