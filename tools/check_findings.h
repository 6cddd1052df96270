// What a save would lose or change, gathered for people: the same complaint about many items is one
// line that names some of them.
#pragma once

#include <cstddef>
#include <functional>
#include <ostream>
#include <string>
#include <unordered_map>
#include <vector>

#include "tools/document_content.h"
#include "vosmere/base/types.h"

namespace vosmere::tool {

inline constexpr std::size_t kPlacesShown = 3;
inline constexpr std::size_t kAllPlaces = static_cast<std::size_t>(-1);

class Findings {
 public:
  /// Names at most that many places for each complaint.
  explicit Findings(std::size_t placesShown) : placesShown_(placesShown) {}

  /// Both are printable. An empty place is the document as a whole; places that are not shown are
  /// not asked for.
  void Add(const std::string& what, const std::function<std::string()>& place);
  /// None, to be shown as these.
  Findings Like() const { return Findings(placesShown_); }
  /// Adds what was found elsewhere.
  void Take(const Findings& others);
  /// Complaints, each counted once.
  std::size_t size() const { return groups_.size(); }
  /// One line each, in the order in which they were found.
  void Print(std::ostream& out, const std::string& file) const;
  /// The same for scripts, an array.
  Json ToJson() const;

 private:
  struct Group {
    std::string what;
    std::size_t count = 0;
    std::vector<std::string> places;
  };

  Group& GroupOf(const std::string& what);

  std::size_t placesShown_;
  std::vector<Group> groups_;
  std::unordered_map<std::string, std::size_t> indexByWhat_;
};

/// An item's name in a place, shortened and printable.
std::string Label(const WChar* name);

/// A place shows at most the innermost so many names, so that hostile depths stay cheap.
inline constexpr std::size_t kPlaceDepth = 6;

/// The names from the outside in, joined.
std::string Place(const std::vector<std::string>& labels);

}  // namespace vosmere::tool
