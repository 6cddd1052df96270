// The fields of items and their links, as the store's files have them: each with a number that it
// keeps for ever, in rising order.
#pragma once

#include <string>
#include <vector>

#include "vosmere/base/internal/bytes.h"
#include "vosmere/tree/tree_link.h"

namespace vosmere {

/// Finds the number of a link that an item refers to, 0 for one that is not in the tree, and the
/// other way round.
struct LinkLookup {
  virtual std::uint64_t NumberOf(const RNode* link) = 0;
  virtual RNode* LinkOf(std::uint64_t number) = 0;
  /// A page that was read refers to a link that may be read only later.
  virtual void ReferLater(RNode* page, std::uint64_t number) = 0;

 protected:
  ~LinkLookup() = default;
};

/// A new link with a new item, detached. Null for a kind that there is not; throws std::bad_alloc.
RNode* NewLink(std::uint64_t type, bool hasItem);
/// Frees both.
void DeleteLink(RNode* link);

/// Appends every field that is not what a new item has.
void WriteFields(RNode& link, LinkLookup& lookup, std::string& bytes);
/// Reads them into a new item. False for what is no such list.
bool ReadFields(RNode& link, LinkLookup& lookup, ByteReader& reader);
/// All fields of an item at one moment.
struct FieldValues {
  struct Field {
    unsigned number;
    std::size_t begin;
  };
  std::vector<Field> fields;
  std::string bytes;

  std::string_view Bytes(std::size_t i) const {
    const std::size_t end = i + 1 < fields.size() ? fields[i + 1].begin : bytes.size();
    return std::string_view(bytes).substr(fields[i].begin, end - fields[i].begin);
  }
};
void TakeFieldValues(RNode& link, LinkLookup& lookup, FieldValues* values);
/// Appends every field that differs, with both values. False when none does.
bool WriteChangedFields(const FieldValues& before, const FieldValues& after, std::string& bytes);
/// Sets each to its second value or, where it is `undone`, its first.
bool ReadChangedFields(RNode& link, LinkLookup& lookup, ByteReader& reader, bool undone);

}  // namespace vosmere
