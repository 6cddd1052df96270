// What several kinds of document share: the fields of items, and what holds what was read.
#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

#include "tools/document_content.h"
#include "tools/kind.h"
#include "tools/text.h"
#include "vosmere/base/list.h"
#include "vosmere/cpp.h"
#include "vosmere/tree/base_node.h"

namespace vosmere::tool {

/// Null for null and for the empty text, which items have for what a document does not say.
inline Json TextOf(const WChar* text) {
  return text && *text ? Json(ToUtf8(text)) : Json();
}

/// Null also for the address of an item that has none.
inline Json AddressOf(const WChar* url) {
  Json address = TextOf(url);
  return address == "about:blank" ? Json() : address;
}

/// Identity, version, and whether the item is deleted. Documents say the version of what has an
/// identity; all else has the first.
inline void AddSync(Record& record, const CBaseNode& item, unsigned ofDeleted = kPlain) {
  const int version = item.GetVersion();
  record.Add("id", TextOf(item.GetUUID()));
  record.Add("version", *item.GetUUID() || version != 1 ? Json(version) : Json());
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

/// Null for the times that the document does not say, which the item has from the clock.
inline void AddTimes(Record& record, const CBaseNode& item) {
  const CNodeStat& stat = *item.GetNodeStat();
  LONG added = 0, modified = 0, lastVisited = 0;
  stat.GetStatTime(&added, &modified, &lastVisited);
  const auto said = [&](LONG time, ULONG which) {
    return stat.GetSetTimes() & which ? Json(time) : Json();
  };
  record.Add("added", said(added, CNodeStat::kAdded));
  record.Add("modified", said(modified, CNodeStat::kModified));
  record.Add("lastVisited", said(lastVisited, CNodeStat::kLastVisited));
}

/// A record for every cell of a chain; `contentOf` is given what is in it.
template <auto contentOf, class Cell>
void AddChildren(Record& record, Cell* head) {
  constexpr auto recordOf = [](Cell& cell) { return contentOf(*list::Datum(cell)); };
  record.isContainer = true;
  record.children = Records::Of<recordOf>(head);
}

inline void ForEachBelow(RNode* parent, const ItemVisit& visit) {
  for (RNode* const link : Children(parent)) {
    visit(*link->item);
    ForEachBelow(link, visit);
  }
}

template <class Cell>
void ForEachInChain(Cell* head, const ItemVisit& visit) {
  for (Cell* cell = head; cell; cell = cell->next) visit(*cell->item);
}

/// A chain with its items.
template <class Cell>
using ItemList = std::unique_ptr<Cell, FreeWith<list::DeleteItems<Cell>>>;

/// A reader that can be handed the root of a document that is parsed already.
template <class Reader>
class Handed : public Reader {
 public:
  using Reader::InvokeParser;
  using Reader::Reader;
};

/// What a reader detached: what is in it, how a writer is given it and, if it holds items, how they
/// are shown.
template <class Owned, auto contentOf, class Written, auto give, auto forEachIn = nullptr>
class LoadedAs : public Loaded {
 public:
  explicit LoadedAs(Owned owned) : owned_(std::move(owned)) {}

  Record Content() const override { return contentOf(owned_.get()); }

  std::unique_ptr<CWriteXML> Writer() const override {
    auto writer = std::make_unique<Written>();
    std::invoke(give, *writer, owned_.get());
    return writer;
  }

  void ForEachItem([[maybe_unused]] const ItemVisit& visit) const override {
    if constexpr (!std::is_null_pointer_v<std::remove_const_t<decltype(forEachIn)>>)
      forEachIn(owned_.get(), visit);
  }

  /// For a kind whose documents hold one thing.
  template <class Reader, auto detach>
  static std::unique_ptr<Loaded> Load(const XmlNode& root) {
    return LoadWith<Reader, detach>(root, false);
  }
  /// For a kind whose documents are lists, which may be empty.
  template <class Reader, auto detach>
  static std::unique_ptr<Loaded> LoadList(const XmlNode& root) {
    return LoadWith<Reader, detach>(root, true);
  }

 private:
  template <class Reader, auto detach>
  static std::unique_ptr<Loaded> LoadWith(const XmlNode& root, bool mayBeNull) {
    Handed<Reader> reader;
    reader.InvokeParser(root);
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
