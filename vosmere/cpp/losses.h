// Losses: what loading or saving a document did not preserve.
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

/// Where something was lost.
struct LossPlace {
  /// When loading, the path of the element, "/opml/body/outline[2]"; when saving, the names of the
  /// folders and of the item, "News > Daily"; empty for the document as a whole.
  std::string path;
  int line = 0;    ///< in the document, from 1; 0 if unknown
  int column = 0;  ///< in characters, from 1; 0 if unknown
};

/// Something that was lost, at one or more places.
struct Loss {
  LossKind kind;
  std::string what;               ///< a message in UTF-8: one line, without a full stop
  std::size_t count = 0;          ///< how often it was lost
  std::vector<LossPlace> places;  ///< the first places
};

/// "4:12 /opml/body/outline[2]". Unknown parts are left out.
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

/// The largest number of names in a place (the innermost are kept), and of code units in each, so
/// that reports about hostile data stay cheap.
inline constexpr std::size_t kPlaceNames = 6;
inline constexpr std::size_t kNameUnits = 40;

inline std::string ShortName(const WChar* name) {
  const WideView view(name);
  if (view.empty()) return "(no name)";
  std::string text = ToUtf8(FirstWhole(view, kNameUnits));
  for (char& c : text)
    if (static_cast<unsigned char>(c) < ' ') c = ' ';  // it stays one line
  return view.size > kNameUnits ? text + "..." : text;
}

/// The names of the folders around an item, and its own name.
inline std::string PlaceOf(const CBaseNode& item) {
  std::string place = ShortName(item.GetName());
  const RNode* link = item.GetRNode();
  std::size_t names = 1;
  for (link = link ? link->parent : nullptr; link && link->parent; link = link->parent) {
    if (names++ == kPlaceNames) return "... > " + place;
    place.insert(0, ShortName(link->item ? link->item->GetName() : nullptr) + " > ");
  }
  return place;
}

inline std::string PlaceOf(const DocumentLoss& loss) {
  if (loss.element) return loss.element;
  if (loss.item) return PlaceOf(*loss.item);
  return loss.name ? ShortName(loss.name) : std::string();
}

}  // namespace detail

/// A list of losses in the order of their first occurrence. The same loss at many places is one
/// entry.
class Losses {
 public:
  /// Records at most `places` places for each loss.
  explicit Losses(std::size_t places = 10) : places_(places) {}

  bool empty() const { return losses_.empty(); }
  std::size_t size() const { return losses_.size(); }
  auto begin() const { return losses_.begin(); }
  auto end() const { return losses_.end(); }

  /// The loss with this message, or null. Valid until a loss is added.
  const Loss* Find(std::string_view what) const {
    const auto found = index_.find(std::string(what));
    return found == index_.end() ? nullptr : &losses_[found->second];
  }

  void Add(const DocumentLoss& record) {
    Loss& loss = Entry(record.kind, record.what);
    ++loss.count;
    if (loss.places.size() < places_) AddPlace(loss, record);
  }
  /// A function for LossReport; `to` is a Losses object.
  static void Report(void* to, const DocumentLoss& loss) { static_cast<Losses*>(to)->Add(loss); }

  /// Appends the losses of another list, for example of the save that follows a load.
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
