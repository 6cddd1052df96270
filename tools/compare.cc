#include "tools/compare.h"

#include <algorithm>
#include <map>
#include <optional>
#include <vector>

#include "tools/text.h"

namespace vosmere::tool {
namespace {

/// The records from the outermost to the one that is looked at.
class Way {
 public:
  explicit Way(std::string_view what) : what_(what) {}

  void Enter(const Record& record) { records_.push_back(&record); }
  void Leave() { records_.pop_back(); }

  std::string Place() const {
    if (records_.size() == 1) return "the " + std::string(what_) + " itself";
    std::vector<std::string> labels;
    for (std::size_t i = records_.size(); --i > 0 && labels.size() <= kPlaceDepth;)
      labels.insert(labels.begin(), Label(ToWide(NameOf(*records_[i])).get()));
    return tool::Place(labels);
  }

 private:
  std::string_view what_;
  std::vector<const Record*> records_;
};

std::string Change(const Field& saved, const Json& back) {
  const std::string name(saved.name);
  if (saved.traits & kSecret) return name + " comes back changed";
  if (IsNothing(saved.value))
    return "an empty " + name + " comes back as " + Printable(back.dump());
  if (IsNothing(back) || saved.value.is_number() || saved.value.is_boolean())
    return name + " does not come back";
  if (saved.value.is_string() && back.is_string()) {
    const auto& rest = back.get_ref<const std::string&>();
    if (saved.value.get_ref<const std::string&>().starts_with(rest))
      return name + " is cut to " + std::to_string(WideLength(ToWide(rest).get())) + " characters";
  }
  return name + " comes back changed";
}

using Pairs = std::vector<const Record*>;

/// What comes back of each child of `saved`: the next of its kind, null for one that is left out.
/// Nothing when there are more or fewer of a kind.
std::optional<Pairs> PairsOf(const Record& saved, const Record& back) {
  Pairs pairs;
  std::size_t kept = 0;
  std::map<std::string_view, std::size_t> next;  // by kind
  for (const Record& child : saved.children) {
    pairs.push_back(nullptr);
    if (!child.leftOut.empty()) continue;
    std::size_t& at = next[child.kind];
    while (at < back.children.size() && back.children[at].kind != child.kind) ++at;
    if (at == back.children.size()) return std::nullopt;
    pairs.back() = &back.children[at++];
    ++kept;
  }
  if (kept != back.children.size()) return std::nullopt;
  return pairs;
}

bool AreInOrder(Pairs pairs) {
  std::erase(pairs, nullptr);
  return std::is_sorted(pairs.begin(), pairs.end());
}

void CompareFrom(Way& way, const Record& saved, const Record& back, const Record& named,
                 Findings& findings) {
  way.Enter(named);
  for (std::size_t i = 0; i < saved.fields.size(); ++i) {
    const Field& field = saved.fields[i];
    const Json& value = back.fields[i].value;
    if (field.value != value && !(IsNothing(field.value) && IsNothing(value)))
      findings.Add(Change(field, value), way.Place());
  }
  const Pairs pairs = *PairsOf(saved, back);
  if (!AreInOrder(pairs))
    findings.Add("the order of what is inside does not come back", way.Place());
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    if (pairs[i]) {
      CompareFrom(way, saved.children[i], *pairs[i], named.children[i], findings);
      continue;
    }
    way.Enter(named.children[i]);
    findings.Add(std::string(saved.children[i].leftOut), way.Place());
    way.Leave();
  }
  way.Leave();
}

bool IsReference(std::string_view text) {
  for (const std::string_view name : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&#"})
    if (text.starts_with(name)) return true;
  return false;
}

void ReportBreakersFrom(Way& way, const Record& record, Findings& findings) {
  way.Enter(record);
  for (const Field& field : record.fields) {
    if (!(field.traits & kRaw) || !field.value.is_string()) continue;
    if (const char breaker = BreakerIn(field.value.get_ref<const std::string&>()))
      findings.Add(std::string(field.name) + " holds '" + breaker +
                       "', which is written as it is: the saved file would not load",
                   way.Place());
  }
  for (const Record& child : record.children) ReportBreakersFrom(way, child, findings);
  way.Leave();
}

}  // namespace

bool SameShape(const Record& saved, const Record& back) {
  if (saved.kind != back.kind || saved.fields.size() != back.fields.size()) return false;
  const std::optional<Pairs> pairs = PairsOf(saved, back);
  for (std::size_t i = 0; pairs && i < pairs->size(); ++i)
    if ((*pairs)[i] && !SameShape(saved.children[i], *(*pairs)[i])) return false;
  return pairs.has_value();
}

void Compare(const Record& saved, const Record& back, const Record& named, std::string_view what,
             Findings& findings) {
  Way way(what);
  CompareFrom(way, saved, back, named, findings);
}

void ReportBreakers(const Record& content, std::string_view what, Findings& findings) {
  Way way(what);
  ReportBreakersFrom(way, content, findings);
}

char BreakerIn(std::string_view value) {
  for (std::size_t i = value.find_first_of("\"<&"); i != std::string_view::npos;
       i = value.find_first_of("\"<&", i + 1))
    if (value[i] != '&' || !IsReference(value.substr(i))) return value[i];
  return 0;
}

}  // namespace vosmere::tool
