#include "tools/snapshot.h"

#include <algorithm>

namespace vosmere::tool {

Snapshot::Snapshot(const Record& content) {
  Add(content);
}

const Snapshot::Cell* Snapshot::Add(const Record& record) {
  Json values = Json::array();
  for (const Field& field : record.fields) values.push_back(field.value);
  Cell& cell = cells_.emplace_back(Cell{&ShapeOf(record), {}});
  Json::to_cbor(values, cell.values);
  const Cell** next = &cell.firstChild;
  for (Records at = record.children; at; ++at) {
    *next = Add(*at);
    next = &const_cast<Cell*>(*next)->next;
  }
  return &cell;
}

const Snapshot::Shape& Snapshot::ShapeOf(const Record& record) {
  const auto isAlike = [](const Field& a, const Field& b) {
    return a.name == b.name && a.traits == b.traits;
  };
  for (const Shape& shape : shapes_)
    if (shape.kind == record.kind && shape.leftOut == record.leftOut &&
        std::ranges::equal(shape.fields, record.fields, isAlike))
      return shape;
  Shape& shape = shapes_.emplace_back(Shape{record.kind, record.leftOut, record.isContainer, {}});
  for (const Field& field : record.fields) shape.fields.push_back({field.name, {}, field.traits});
  return shape;
}

Record Snapshot::RecordOf(const Cell& cell) {
  const Shape& shape = *cell.shape;
  Record record{shape.kind, shape.fields, shape.isContainer, {}, shape.leftOut};
  const Json values = Json::from_cbor(cell.values);
  for (std::size_t i = 0; i < record.fields.size(); ++i) record.fields[i].value = values[i];
  record.children = Records::Of<RecordOf>(cell.firstChild);
  return record;
}

}  // namespace vosmere::tool
