#include "tools/check_findings.h"

#include "tools/text.h"

namespace vosmere::tool {
namespace {

constexpr std::size_t kLabelUnits = 40;

}  // namespace

Findings::Group& Findings::GroupOf(const std::string& what) {
  const auto [found, isNew] = indexByWhat_.try_emplace(what, groups_.size());
  if (isNew) groups_.push_back({what, 0, {}});
  return groups_[found->second];
}

void Findings::Add(const std::string& what, const std::function<std::string()>& place) {
  Group& group = GroupOf(what);
  ++group.count;
  if (group.places.size() >= placesShown_) return;
  if (const std::string shown = place(); !shown.empty()) group.places.push_back(shown);
}

void Findings::Take(const Findings& others) {
  for (const Group& other : others.groups_) {
    Group& group = GroupOf(other.what);
    group.count += other.count;
    for (const std::string& place : other.places)
      if (group.places.size() < placesShown_) group.places.push_back(place);
  }
}

void Findings::Print(std::ostream& out, const std::string& file) const {
  for (const Group& group : groups_) {
    out << file << ": warning: " << group.what;
    const char* separator = ": ";
    for (const std::string& place : group.places) {
      out << separator << place;
      separator = "; ";
    }
    if (!group.places.empty() && group.count > group.places.size())
      out << " and " << group.count - group.places.size() << " more";
    out << '\n';
  }
}

Json Findings::ToJson() const {
  Json json = Json::array();
  for (const Group& group : groups_)
    json.push_back({{"what", group.what}, {"count", group.count}, {"places", group.places}});
  return json;
}

std::string Label(const WChar* name) {
  const WideView view(name);
  if (view.empty()) return "(no name)";
  if (view.size <= kLabelUnits) return Printable(name);
  return Printable(Wide(ToUtf16(name).substr(0, kLabelUnits))) + "...";
}

std::string Place(const std::vector<std::string>& labels) {
  std::size_t i = labels.size() > kPlaceDepth ? labels.size() - kPlaceDepth : 0;
  std::string place = i ? "... > " : "";
  for (; i < labels.size(); ++i) place += labels[i] + (i + 1 < labels.size() ? " > " : "");
  return place;
}

}  // namespace vosmere::tool
