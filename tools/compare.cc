#include "tools/compare.h"

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

void CompareFrom(Way& way, const Record& saved, const Record& back, const Record& named,
                 Findings& findings) {
  way.Enter(named);
  for (std::size_t i = 0; i < saved.fields.size(); ++i) {
    const Field& field = saved.fields[i];
    const Json& value = back.fields[i].value;
    if (field.value != value && !(IsNothing(field.value) && IsNothing(value)))
      findings.Add(Change(field, value), way.Place());
  }
  auto beside = back.children.begin();
  for (std::size_t i = 0; i < saved.children.size(); ++i) {
    const Record& child = saved.children[i];
    if (child.leftOut.empty()) {
      CompareFrom(way, child, *beside++, named.children[i], findings);
      continue;
    }
    way.Enter(named.children[i]);
    findings.Add(std::string(child.leftOut), way.Place());
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
  auto beside = back.children.begin();
  for (const Record& child : saved.children) {
    if (!child.leftOut.empty()) continue;
    if (beside == back.children.end() || !SameShape(child, *beside++)) return false;
  }
  return beside == back.children.end();
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
