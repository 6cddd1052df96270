// The chain of items that a reader builds.
#pragma once

#include <type_traits>
#include <utility>

#include "vosmere/base/chain.h"
#include "vosmere/base/list.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/platform/xml_node.h"
#include "vosmere/xml/reader_report.h"

namespace vosmere::xml {

/// The chain that a reader builds, which frees every cell and its item unless it was detached. It
/// is a builder for the tables of xml/reader_scopes.h:
///
///     using Shelf = ItemChain<RBook>;
///
///     constexpr ScopedElement<Shelf> kElements[] = {
///         {kAnywhere, "book", BeginItem, kBook, EndItem},
///         {kBook, "title", TextTo<&Shelf::item, &CBook::SetTitle>},
///     };
template <class Cell>
class ItemChain {
 public:
  using Item =
      std::remove_pointer_t<std::remove_reference_t<decltype(list::Datum(std::declval<Cell&>()))>>;

  ItemChain() = default;
  ItemChain(const ItemChain&) = delete;
  ItemChain& operator=(const ItemChain&) = delete;
  ~ItemChain() { Clear(); }

  Cell* head() const { return head_; }
  /// The item whose element is being read; null outside of one.
  Item* item() const { return item_; }

  /// Appends a new item, which is then being read. Throws std::bad_alloc.
  void Begin() {
    OwnedPointer<Item, FreeWith<Item::Delete>> item(Item::New());
    Cell* const cell = item ? Cell::New(item.get()) : nullptr;
    if (!cell) detail::ThrowNoMemory();
    item_ = item.Detach();
    chain::Append(head_, cell);
  }
  void End() { item_ = nullptr; }

  /// Gives the chain to the caller.
  Cell* Detach() {
    End();
    return std::exchange(head_, nullptr);
  }
  void Clear() { list::DeleteItems(Detach()); }

 private:
  Cell* head_ = nullptr;
  Item* item_ = nullptr;
};

// The row of an item.

template <class Chain>
void BeginItem(Chain& chain, const Element& element) {
  if (element.report()) element.report()->MakesItem();
  chain.Begin();
}

template <class Chain>
void EndItem(Chain& chain) {
  chain.End();
}

/// The row of another element named as the root: behind it no item is being read any more.
template <class Chain>
void EndItem(Chain& chain, const Element&) {
  chain.End();
}

}  // namespace vosmere::xml
