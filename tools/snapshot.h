// What a document holds, kept when the document is gone.
#pragma once

#include <deque>
#include <string>

#include "tools/document_content.h"

namespace vosmere::tool {

/// A copy of a record and of all that is in it, in a fraction of the memory that the items take.
class Snapshot {
 public:
  explicit Snapshot(const Record& content);
  Snapshot(Snapshot&&) = default;

  /// Lives as long as this.
  Record Content() const { return RecordOf(cells_.front()); }

 private:
  /// What records have in common.
  struct Shape {
    std::string_view kind;
    std::string_view leftOut;
    bool isContainer;
    std::vector<Field> fields;  ///< without values
  };

  struct Cell {
    const Shape* shape;
    std::string values;  ///< in CBOR
    const Cell* firstChild = nullptr;
    const Cell* next = nullptr;
  };

  static Record RecordOf(const Cell& cell);

  const Cell* Add(const Record& record);
  const Shape& ShapeOf(const Record& record);

  std::deque<Shape> shapes_;
  std::deque<Cell> cells_;
};

}  // namespace vosmere::tool
