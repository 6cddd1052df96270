#include "tools/loss_on_save.h"

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

/// What comes back of each child of a record: the next of its kind.
class Partners {
 public:
  explicit Partners(const Records& all) : all_(all) {}

  std::optional<Record> NextOf(std::string_view kind) {
    Search& search = searches_.try_emplace(kind, Search{all_}).first->second;
    for (; search.at; ++search.at, ++search.position) {
      Record record = *search.at;
      if (record.kind != kind) continue;
      ++search.at;
      inOrder_ = inOrder_ && search.position >= last_;
      last_ = search.position++;
      ++found_;
      return record;
    }
    return std::nullopt;
  }

  bool AreInOrder() const { return inOrder_; }
  bool AreAllFound() const {
    std::size_t count = 0;
    for (Records at = all_; at; ++at) ++count;
    return count == found_;
  }

 private:
  struct Search {
    Records at;
    std::size_t position = 0;
  };

  Records all_;
  std::map<std::string_view, Search> searches_;  // by kind
  bool inOrder_ = true;
  std::size_t last_ = 0;  // position found
  std::size_t found_ = 0;
};

class Comparison {
 public:
  Comparison(std::string_view what, Findings& findings) : way_(what), findings_(findings) {}

  /// False when the shapes differ.
  bool Run(const Record& saved, const Record& back, const Record& named) {
    if (saved.kind != back.kind || saved.fields.size() != back.fields.size()) return false;
    way_.Enter(named);
    CompareFields(saved, back);
    const bool isSame = CompareChildren(saved, back, named);
    way_.Leave();
    return isSame;
  }

 private:
  void CompareFields(const Record& saved, const Record& back) {
    const auto place = [this] { return way_.Place(); };
    std::string invented;
    for (std::size_t i = 0; i < saved.fields.size(); ++i) {
      const Field& field = saved.fields[i];
      const Json& value = back.fields[i].value;
      if (field.value == value || (IsNothing(field.value) && IsNothing(value))) continue;
      if (field.value.is_null() && value.is_number())
        invented += (invented.empty() ? "" : ", ") + std::string(field.name);
      else
        findings_.Add(Change(field, value), place);
    }
    if (!invented.empty())
      findings_.Add("no time in the document (" + invented + "): a copy says now", place);
  }

  bool CompareChildren(const Record& saved, const Record& back, const Record& named) {
    Partners partners(back.children);
    const bool namesItself = &named == &saved;
    Records name = named.children;
    for (Records at = saved.children; at; ++at, ++name) {
      if (!name) return false;
      const Record child = *at;
      if (!(namesItself ? CompareChild(child, partners, child)
                        : CompareChild(child, partners, *name)))
        return false;
    }
    if (!partners.AreInOrder())
      findings_.Add("the order of what is inside does not come back",
                    [this] { return way_.Place(); });
    return !name && partners.AreAllFound();
  }

  bool CompareChild(const Record& saved, Partners& partners, const Record& named) {
    if (saved.leftOut.empty()) {
      const std::optional<Record> back = partners.NextOf(saved.kind);
      return back && Run(saved, *back, named);
    }
    way_.Enter(named);
    findings_.Add(std::string(saved.leftOut), [this] { return way_.Place(); });
    way_.Leave();
    return true;
  }

  Way way_;
  Findings& findings_;
};

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
                   [&] { return way.Place(); });
  }
  for (Records at = record.children; at; ++at) ReportBreakersFrom(way, *at, findings);
  way.Leave();
}

}  // namespace

bool Compare(const Record& saved, const Record& back, const Record& named, std::string_view what,
             Findings& findings) {
  Findings found = findings.Like();
  const bool isSame = Comparison(what, found).Run(saved, back, named);
  if (isSame) findings.Take(std::move(found));
  return isSame;
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
