// What a loaded document holds, in one form for every kind of document: records within records.
// Showing, comparing and explaining are written once, over this.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vosmere::tool {

using Json = nlohmann::ordered_json;

/// What is to be known of a field, as bits. Scripts are shown all but the secrets.
enum Trait : unsigned {
  kPlain = 0,
  kOnLine = 1,   ///< people see it behind the name: a text as it is, a number or a truth as a mark
  kOwnLine = 2,  ///< people see it in a line of its own
  kRaw = 4,      ///< it is written as it is: markup in it breaks the saved document
  kSecret = 8,   ///< it is compared, and never printed
};

struct Field {
  std::string_view name;
  Json value;
  unsigned traits;

  bool operator==(const Field&) const = default;
};

/// An item of a document, or the document as a whole. Its first field names it; records of one kind
/// have the same fields.
struct Record {
  std::string_view kind;
  std::vector<Field> fields = {};
  /// Whether it is of a kind that has children.
  bool isContainer = false;
  std::vector<Record> children = {};
  /// Why a save leaves it out, on purpose; empty when it does not.
  std::string_view leftOut = {};

  void Add(std::string_view name, Json value, unsigned traits = kPlain) {
    fields.push_back({name, std::move(value), traits});
  }

  bool operator==(const Record&) const = default;
};

/// Empty when it has none.
std::string NameOf(const Record& record);

/// Whether a value says nothing: null, an empty text, an empty list.
bool IsNothing(const Json& value);

}  // namespace vosmere::tool
