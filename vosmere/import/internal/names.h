// The names of elements and attributes in damaged documents.
#pragma once

#include <string>
#include <string_view>
#include <unordered_set>

namespace vosmere::importing {

/// Makes names that every parser takes. The names that it returns are valid as long as it and the
/// names that it was given.
class Names {
 public:
  /// An element's name: known ones in their usual case, others as Attribute makes them.
  std::string_view Element(std::string_view name);
  /// A name in which everything but ASCII letters, digits, "_", "-", "." and one colon is replaced.
  std::string_view Attribute(std::string_view name);

 private:
  std::unordered_set<std::string> made_;
};

/// Whether a character that XML allows in no name was replaced.
bool IsFaulty(std::string_view name, std::string_view made);
/// What stands before the colon; empty without one.
std::string_view PrefixOf(std::string_view name);

}  // namespace vosmere::importing
