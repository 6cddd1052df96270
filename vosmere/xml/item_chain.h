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

/// The chain of items that a reader builds. The destructor frees every cell with its item, unless
/// the chain was detached. It serves as the builder for the tables of xml/reader_scopes.h:
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
  /// The item whose element is being read; null outside such an element.
  Item* item() const { return item_; }

  /// Appends a new item and makes it the current one. Throws std::bad_alloc.
  void Begin() {
    OwnedPointer<Item, FreeWith<Item::Delete>> item(Item::New());
    Cell* const cell = item ? Cell::New(item.get()) : nullptr;
    if (!cell) detail::ThrowNoMemory();
    item_ = item.Detach();
    chain::Append(head_, cell);
  }
  void End() { item_ = nullptr; }

  /// Returns the chain, which the caller then owns.
  Cell* Detach() {
    End();
    return std::exchange(head_, nullptr);
  }
  void Clear() { list::DeleteItems(Detach()); }

 private:
  Cell* head_ = nullptr;
  Item* item_ = nullptr;
};

// For the row of an item's element.

template <class Chain>
void BeginItem(Chain& chain, const Element& element) {
  if (element.report()) element.report()->MakesItem();
  chain.Begin();
}

template <class Chain>
void EndItem(Chain& chain) {
  chain.End();
}

/// For the row of a nested element with the name of the root: after it there is no current item.
template <class Chain>
void EndItem(Chain& chain, const Element&) {
  chain.End();
}

}  // namespace vosmere::xml
