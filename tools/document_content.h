// The content of a loaded document as nested records, the same for every kind of document, so that
// showing is written only once. Records are made when they are visited: those of a whole large
// document would take several times its memory.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vosmere {
class CBaseNode;
}

namespace vosmere::tool {

using Json = nlohmann::ordered_json;

/// How a field is shown to people, and what it is, as bits. JSON output contains all fields.
enum Trait : unsigned {
  kPlain = 0,
  kOnLine = 1,   ///< after the name: a text itself, a number or a boolean as a mark
  kOwnLine = 2,  ///< on a line of its own
  kTime = 4,     ///< a time; null where the document has none, and a copy would make one up
};

struct Field {
  std::string_view name;
  Json value;
  unsigned traits;
};

struct Record;

/// An iterator that makes a record of each cell of a chain. The chain must outlive it.
class Records {
 public:
  Records() = default;
  /// Begins at `head`. `recordOf` makes the record of a cell.
  template <auto recordOf, class Cell>
  static Records Of(Cell* head);

  /// False at the end.
  explicit operator bool() const { return cell_ != nullptr; }
  Record operator*() const;
  Records& operator++() {
    cell_ = next_(cell_);
    return *this;
  }

 private:
  template <class Cell>
  static Cell* CellAt(const void* cell) {
    return const_cast<Cell*>(static_cast<const Cell*>(cell));
  }

  const void* cell_ = nullptr;
  Record (*record_)(const void* cell) = nullptr;
  const void* (*next_)(const void* cell) = nullptr;
};

/// An item of a document, or the document as a whole. The first field is its name; records of one
/// kind have the same fields.
struct Record {
  std::string_view kind;
  std::vector<Field> fields = {};
  /// Whether records of this kind may have children.
  bool isContainer = false;
  Records children = {};
  /// The item, if documents keep its marks; owned by the document.
  CBaseNode* marked = nullptr;

  void Add(std::string_view name, Json value, unsigned traits = kPlain) {
    fields.push_back({name, std::move(value), traits});
  }
};

template <auto recordOf, class Cell>
Records Records::Of(Cell* head) {
  Records records;
  records.cell_ = head;
  records.record_ = [](const void* cell) -> Record { return recordOf(*CellAt<Cell>(cell)); };
  records.next_ = [](const void* cell) -> const void* { return CellAt<Cell>(cell)->next; };
  return records;
}

inline Record Records::operator*() const {
  return record_(cell_);
}

/// The name of a record; empty if it has none.
std::string NameOf(const Record& record);

/// JSON in UTF-8 on one line. Characters that steer a terminal are escaped, as Printable does.
std::string JsonText(const Json& value);

/// Whether a value is null, an empty text or an empty list.
bool IsNothing(const Json& value);

}  // namespace vosmere::tool
