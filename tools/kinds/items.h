// What several kinds of document share: the fields of items, and what holds what was read.
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "tools/kind.h"
#include "tools/record.h"
#include "tools/text.h"
#include "vosmere/base/list.h"
#include "vosmere/cpp.h"
#include "vosmere/tree/base_node.h"

namespace vosmere::tool {

/// Null for null.
inline Json TextOf(const WChar* text) {
  return text ? Json(ToUtf8(text)) : Json();
}

/// Identity, version, and whether the item is deleted.
inline void AddSync(Record& record, const CBaseNode& item, unsigned ofDeleted = kPlain) {
  record.Add("id", TextOf(item.GetUUID()));
  record.Add("version", item.GetVersion());
  record.Add("deleted", item.IsDeleted(), ofDeleted);
}

inline void AddBuild(Record& record, const CBaseNode& item) {
  record.Add("baseBuild", item.GetBaseBuild());
  record.Add("checkedIn", item.HasCheckedIn(nullptr));
}

inline void AddMarks(Record& record, const CBaseNode& item) {
  record.Add("unread", item.GetNodeStat()->IsUnread(), kOnLine);
  record.Add("flag", item.GetNodeStat()->GetFlag(), kOnLine);
}

inline void AddTimes(Record& record, const CBaseNode& item) {
  LONG added = 0, modified = 0, lastVisited = 0;
  item.GetNodeStat()->GetStatTime(&added, &modified, &lastVisited);
  record.Add("added", added);
  record.Add("modified", modified);
  record.Add("lastVisited", lastVisited);
}

/// A record for every cell of a chain; `contentOf` is given what is in it.
template <class Cell, class ContentOf>
void AddChildren(Record& record, Cell* head, ContentOf contentOf) {
  record.isContainer = true;
  for (Cell* cell = head; cell; cell = cell->next)
    record.children.push_back(contentOf(*list::Datum(*cell)));
}

/// The first item below a link, in document order; null when there is none.
inline CBaseNode* FindBelow(RNode* parent, const ItemTest& isMeant) {
  for (RNode* const link : Children(parent)) {
    if (isMeant(*link->item)) return link->item;
    if (CBaseNode* const found = FindBelow(link, isMeant)) return found;
  }
  return nullptr;
}

/// The first item of a chain; null when there is none.
template <class Cell>
CBaseNode* FindInChain(Cell* head, const ItemTest& isMeant) {
  for (Cell* cell = head; cell; cell = cell->next)
    if (isMeant(*cell->item)) return cell->item;
  return nullptr;
}

/// A chain with its items.
template <class Cell>
using ItemList = std::unique_ptr<Cell, FreeWith<list::DeleteItems<Cell>>>;

/// What a reader detached: what is in it, how a writer is given it and, if it holds items, how one
/// is found.
template <class Owned, auto contentOf, class Written, auto give, auto findIn = nullptr>
class LoadedAs : public Loaded {
 public:
  explicit LoadedAs(Owned owned) : owned_(std::move(owned)) {}

  Record Content() const override { return contentOf(owned_.get()); }

  std::unique_ptr<CWriteXML> Writer() const override {
    auto writer = std::make_unique<Written>();
    std::invoke(give, *writer, owned_.get());
    return writer;
  }

  CBaseNode* Find(const ItemTest& isMeant) const override {
    if constexpr (!std::is_null_pointer_v<std::remove_const_t<decltype(findIn)>>)
      return findIn(owned_.get(), isMeant);
    else
      return nullptr;
  }

  /// For a kind whose documents hold one thing.
  template <class Reader, auto detach>
  static std::unique_ptr<Loaded> Load(const Source& source) {
    return LoadWith<Reader, detach>(source, false);
  }
  /// For a kind whose documents are lists, which may be empty.
  template <class Reader, auto detach>
  static std::unique_ptr<Loaded> LoadList(const Source& source) {
    return LoadWith<Reader, detach>(source, true);
  }

 private:
  template <class Reader, auto detach>
  static std::unique_ptr<Loaded> LoadWith(const Source& source, bool mayBeNull) {
    Reader reader;
    if (!source(reader)) return nullptr;
    Owned owned(std::invoke(detach, reader));
    return owned || mayBeNull ? std::make_unique<LoadedAs>(std::move(owned)) : nullptr;
  }

  Owned owned_;
};

/// Complains of an item within another: the inner one ends the outer one.
inline void InspectNesting(std::string_view name, std::string_view scope, const Report& report) {
  if (name == scope) report("what stands inside another of its kind moves out of it");
}

}  // namespace vosmere::tool
