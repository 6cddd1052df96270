// What a loaded document holds, in one form for every kind of document: records within records.
// Showing is written once, over this. Records are made as one comes to
// them, as all of a large document at once would take several times its memory.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vosmere::tool {

using Json = nlohmann::ordered_json;

/// What is to be known of a field, as bits. Scripts are shown all.
enum Trait : unsigned {
  kPlain = 0,
  kOnLine = 1,   ///< people see it behind the name: a text as it is, a number or a truth as a mark
  kOwnLine = 2,  ///< people see it in a line of its own
};

struct Field {
  std::string_view name;
  Json value;
  unsigned traits;
};

struct Record;

/// Records one after the other, of the cells of a chain, which outlives them.
class Records {
 public:
  Records() = default;
  /// `recordOf` makes the record of a cell.
  template <auto recordOf, class Cell>
  static Records Of(Cell* head);

  /// Whether there is one here.
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

/// An item of a document, or the document as a whole. Its first field names it; records of one kind
/// have the same fields.
struct Record {
  std::string_view kind;
  std::vector<Field> fields = {};
  /// Whether it is of a kind that has children.
  bool isContainer = false;
  Records children = {};

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

/// Empty when it has none.
std::string NameOf(const Record& record);

/// Whether a value says nothing: null, an empty text, an empty list.
bool IsNothing(const Json& value);

}  // namespace vosmere::tool
