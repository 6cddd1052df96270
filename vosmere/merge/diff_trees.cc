#include "vosmere/merge/diff_trees.h"

#include <algorithm>

#include "vosmere/merge/internal/field_rules.h"
#include "vosmere/merge/internal/tree_outline.h"

namespace vosmere {
namespace {

// Links to other items are not shown.
class NoLinks : public LinkLookup {
 public:
  std::uint64_t NumberOf(const RNode*) override { return 0; }
  RNode* LinkOf(std::uint64_t) override { return nullptr; }
  void ReferLater(RNode*, std::uint64_t) override {}
};

/// The fields that two items have in common.
class FieldPair {
 public:
  void Take(const RNode& a, const RNode& b) {
    NoLinks none;
    TakeFieldValues(const_cast<RNode&>(a), none, &a_);
    TakeFieldValues(const_cast<RNode&>(b), none, &b_);
    first_ = &a, second_ = &b;
  }
  /// Calls `use(rule, before, after)` for each shown field that differs, until it is false.
  template <class Use>
  void ForEach(Use use) const {
    if (a_.bytes == b_.bytes) return;
    const std::size_t count = std::min(a_.fields.size(), b_.fields.size());
    for (std::size_t i = 0; i < count && a_.fields[i].number == b_.fields[i].number; ++i) {
      if (a_.Bytes(i) == b_.Bytes(i)) continue;
      const FieldRule& rule = RuleOf(a_.fields[i].number);
      if (rule.name && !SameValue(rule, a_.Bytes(i), b_.Bytes(i)) && IsSaid(rule) &&
          !use(rule, a_.Bytes(i), b_.Bytes(i)))
        return;
    }
  }

 private:
  bool IsSaid(const FieldRule& rule) const {
    return rule.form != FieldForm::kTime ||
           (IsTimeSaid(*first_, rule.number) && IsTimeSaid(*second_, rule.number));
  }

  FieldValues a_, b_;
  const RNode* first_ = nullptr;
  const RNode* second_ = nullptr;
};

class TreeDiff : public DiffHandler {
 public:
  TreeDiff(const TreeOutline& a, const TreeOutline& b, TreeDifferenceReport report, void* to)
      : a_(a), b_(b), report_(report), to_(to) {}

  bool FieldsDiffer(std::size_t a, std::size_t b) override {
    bool differ = false;
    pair_.Take(*a_.links[a], *b_.links[b]);
    pair_.ForEach([&](const FieldRule& rule, std::string_view, std::string_view) {
      differ = rule.number != kNameField;
      return !differ;
    });
    return differ;
  }
  void Report(const ItemDifference& difference) override {
    report_(to_, {difference.what, difference.a == kNoItem ? nullptr : a_.links[difference.a],
                  difference.b == kNoItem ? nullptr : b_.links[difference.b]});
  }

 private:
  const TreeOutline& a_;
  const TreeOutline& b_;
  TreeDifferenceReport report_;
  void* to_;
  FieldPair pair_;
};

}  // namespace

void DiffTrees(const RNode* a, const RNode* b, TreeParts parts, TreeDifferenceReport report,
               void* to) {
  const TreeOutline before(a, parts), after(b, parts);
  TreeDiff diff(before, after, report, to);
  DiffItems(before.items.data(), before.items.size(), after.items.data(), after.items.size(), diff);
}

void DiffFields(const RNode* before, const RNode* after, FieldDifferenceReport report, void* to) {
  FieldPair pair;
  pair.Take(*before, *after);
  pair.ForEach([&](const FieldRule& rule, std::string_view a, std::string_view b) {
    const std::string was = ValueToUtf8(rule, a), is = ValueToUtf8(rule, b);
    report(to, {rule.name, was.c_str(), is.c_str()});
    return true;
  });
}

}  // namespace vosmere
