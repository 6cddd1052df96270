// What got lost between a document and its data, one way or the other.
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "vosmere/base/document_loss.h"
#include "vosmere/cpp/text.h"
#include "vosmere/cpp/walk.h"

namespace vosmere {

/// Where something got lost.
struct LossPlace {
  /// Of a load the element's path, "/opml/body/outline[2]"; of a save the names of the folders and
  /// of the item, "News > Daily"; empty for a document as a whole.
  std::string path;
  int line = 0;    ///< of the document, from 1; 0 when it is not known
  int column = 0;  ///< in characters, from 1; 0 when it is not known
};

/// Something that got lost, once or many times.
struct Loss {
  LossKind kind;
  std::string what;  ///< for people: UTF-8, one line, no full stop
  std::size_t count = 0;
  std::vector<LossPlace> places;  ///< the first of them
};

/// "4:12 /opml/body/outline[2]", without the parts that are not known.
inline std::string ToString(const LossPlace& place) {
  if (!place.line) return place.path;
  std::string text = std::to_string(place.line);
  if (place.column) text += ":" + std::to_string(place.column);
  return place.path.empty() ? text : text + " " + place.path;
}

/// "what: place; place and 3 more"
inline std::string ToString(const Loss& loss) {
  std::string text = loss.what;
  const char* separator = ": ";
  for (const LossPlace& place : loss.places) {
    text += separator + ToString(place);
    separator = "; ";
  }
  if (!loss.places.empty() && loss.count > loss.places.size())
    text += " and " + std::to_string(loss.count - loss.places.size()) + " more";
  return text;
}

inline std::ostream& operator<<(std::ostream& out, const Loss& loss) {
  return out << ToString(loss);
}

namespace detail {

/// At most the innermost so many names of a place, and so many units of each, so that hostile ones
/// stay cheap.
inline constexpr std::size_t kPlaceNames = 6;
inline constexpr std::size_t kNameUnits = 40;

inline std::string ShortName(const WChar* name) {
  const WideView view(name);
  if (view.empty()) return "(no name)";
  if (view.size <= kNameUnits) return ToUtf8(view);
  return ToUtf8(FirstWhole(view, kNameUnits)) + "...";
}

/// The names of the folders around an item and its own.
inline std::string PlaceOf(const CBaseNode& item) {
  std::string place = ShortName(item.GetName());
  const RNode* link = item.GetRNode();
  std::size_t names = 1;
  for (link = link ? link->parent : nullptr; link && link->parent; link = link->parent) {
    if (names++ == kPlaceNames) return "... > " + place;
    place = ShortName(link->item ? link->item->GetName() : nullptr) + " > " + place;
  }
  return place;
}

inline std::string PlaceOf(const DocumentLoss& loss) {
  if (loss.element) return loss.element;
  if (loss.item) return PlaceOf(*loss.item);
  return loss.name ? ShortName(loss.name) : std::string();
}

}  // namespace detail

/// What got lost, in the order in which it came up; the same about many items is one entry. A value
/// that moves and copies.
class Losses {
 public:
  /// Keeps at most so many places of each.
  explicit Losses(std::size_t places = 10) : places_(places) {}

  bool empty() const { return losses_.empty(); }
  std::size_t size() const { return losses_.size(); }
  auto begin() const { return losses_.begin(); }
  auto end() const { return losses_.end(); }

  /// Null when nothing of the kind is there.
  const Loss* Find(std::string_view what) const {
    const auto found = index_.find(std::string(what));
    return found == index_.end() ? nullptr : &losses_[found->second];
  }

  void Add(const DocumentLoss& record) {
    Loss& loss = Entry(record.kind, record.what);
    ++loss.count;
    if (loss.places.size() < places_) AddPlace(loss, record);
  }
  /// A LossReport, for Losses as `to`.
  static void Report(void* to, const DocumentLoss& loss) { static_cast<Losses*>(to)->Add(loss); }

  /// Those of another time, behind these.
  void Add(const Losses& more) {
    for (const Loss& other : more) {
      Loss& loss = Entry(other.kind, other.what);
      loss.count += other.count;
      for (const LossPlace& place : other.places)
        if (loss.places.size() < places_) loss.places.push_back(place);
    }
  }

 private:
  Loss& Entry(LossKind kind, const std::string& what) {
    const auto [found, isNew] = index_.try_emplace(what, losses_.size());
    if (isNew) losses_.push_back({kind, what, 0, {}});
    return losses_[found->second];
  }

  static void AddPlace(Loss& loss, const DocumentLoss& record) {
    LossPlace place{detail::PlaceOf(record), record.line, record.column};
    if (!place.path.empty() || place.line) loss.places.push_back(std::move(place));
  }

  std::size_t places_;
  std::vector<Loss> losses_;
  std::unordered_map<std::string, std::size_t> index_;
};

}  // namespace vosmere
