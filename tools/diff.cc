// The verb "diff". Records, which are the same for every kind of document, are compared.
#include "tools/diff.h"

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <initializer_list>
#include <iostream>

#include "tools/colors.h"
#include "tools/contents.h"
#include "tools/document.h"

#include "tools/text.h"

namespace vosmere::tool {
namespace {

/// The texts of the fields with these names, one after the other.
std::string TextsOf(const Record& record, std::initializer_list<std::string_view> names) {
  std::string texts;
  for (const Field& field : record.fields)
    if (field.value.is_string() && std::find(names.begin(), names.end(), field.name) != names.end())
      texts += field.value.get_ref<const std::string&>();
  return texts;
}

/// A document as a list of items for DiffItems.
class RecordOutline {
 public:
  explicit RecordOutline(const AnyDocument& document) : document_(document) {
    Add(ContentOf(document), 0, {});
  }

  const std::vector<OutlineItem>& items() const { return items_; }
  Record RecordAt(std::size_t i) const { return i == 0 ? ContentOf(document_) : *places_[i]; }
  std::string NameAt(std::size_t i) const {
    return items_[i].name.empty() ? "(no name)" : std::string(items_[i].name);
  }
  /// The innermost folders that the item is in, without the root, and the beginnings of their
  /// names: a hostile document would make the output too long with all.
  std::string FolderAt(std::size_t i) const {
    std::string folder;
    std::size_t names = 0;
    for (i = items_[i].parent; i != 0; i = items_[i].parent) {
      if (names++ == detail::kPlaceNames) return folder.insert(0, "... > ");
      const std::string name = detail::ShortName(Wide(items_[i].name));
      folder.insert(0, folder.empty() ? name : name + " > ");
    }
    return folder;
  }

 private:
  void Add(const Record& record, std::size_t parent, const Records& place) {
    const std::size_t index = items_.size();
    OutlineItem item{parent, KindNumber(record.kind)};
    item.identity = Keep(TextsOf(record, {"colctId", "id", "clsid"}));
    item.address = Keep(TextsOf(record, {"link", "xmlUrl", "queryUrl", "url"}));
    item.name = Keep(NameOf(record));
    items_.push_back(item);
    places_.push_back(place);
    for (Records at = record.children; at; ++at) Add(*at, index, at);
  }
  std::string_view Keep(std::string text) { return texts_.emplace_back(std::move(text)); }
  static unsigned KindNumber(std::string_view kind) {
    unsigned number = 0;
    for (const char c : kind) number = number * 31 + static_cast<unsigned char>(c);
    return number;
  }

  const AnyDocument& document_;
  std::vector<OutlineItem> items_;
  std::vector<Records> places_;
  std::deque<std::string> texts_;  // which stay where they are
};

std::string ValueOf(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.is_null() ? "" : value.dump();
}

/// A time that one of the two does not state does not count.
bool Differ(const Field& a, const Field& b) {
  const bool isUnsaid = a.traits & kTime && (a.value.is_null() || b.value.is_null());
  return !isUnsaid && a.value != b.value;
}

/// Prints each difference as it is found.
class Printer : public DiffHandler {
 public:
  Printer(const RecordOutline& a, const RecordOutline& b, bool asJson)
      : a_(a), b_(b), asJson_(asJson) {}

  bool any() const { return any_; }

  bool FieldsDiffer(std::size_t a, std::size_t b) override {
    bool differ = false;
    ForEachField(a, b, [&](const Field&, const Field&) { differ = true; });
    return differ;
  }
  void Report(const ItemDifference& difference) override {
    asJson_ ? PrintJson(difference) : PrintLine(difference);
    any_ = true;
  }

 private:
  /// Calls `use` with each field that differs, but not for the name, which is the first.
  template <class Use>
  void ForEachField(std::size_t a, std::size_t b, Use use) {
    const Record before = a_.RecordAt(a), after = b_.RecordAt(b);
    const std::size_t count = std::min(before.fields.size(), after.fields.size());
    for (std::size_t i = 1; i < count; ++i)
      if (Differ(before.fields[i], after.fields[i])) use(before.fields[i], after.fields[i]);
  }

  ItemChange ChangeOf(const ItemDifference& difference) const {
    ItemChange change;
    change.what = difference.what;
    const bool isThere = difference.b != kNoItem;
    const RecordOutline& in = isThere ? b_ : a_;
    change.name = in.NameAt(isThere ? difference.b : difference.a);
    change.folder = in.FolderAt(isThere ? difference.b : difference.a);
    if (difference.what & kIsRenamed) change.oldName = a_.NameAt(difference.a);
    if (difference.what & kIsMoved) change.oldFolder = a_.FolderAt(difference.a);
    return change;
  }

  void PrintLine(const ItemDifference& difference) {
    ItemChange change = ChangeOf(difference);
    if (difference.what & kIsChanged)
      ForEachField(difference.a, difference.b, [&](const Field& before, const Field& after) {
        change.fields.push_back(
            {std::string(before.name), ValueOf(before.value), ValueOf(after.value)});
      });
    const char* const color = difference.what & kIsAdded     ? kGreen
                              : difference.what & kIsRemoved ? kRed
                                                             : kYellow;
    std::cout << Colored(Printable(ToString(change)), color, Stream::kOutput) << '\n';
  }

  void PrintJson(const ItemDifference& difference) {
    const ItemChange change = ChangeOf(difference);
    constexpr const char* kNames[] = {"added", "removed", "moved", "renamed", "changed"};
    Json json = {{"what", Json::array()}};
    for (unsigned i = 0; i < 5; ++i)
      if (difference.what >> i & 1) json["what"].push_back(kNames[i]);
    json["kind"] =
        (difference.b == kNoItem ? a_.RecordAt(difference.a) : b_.RecordAt(difference.b)).kind;
    json["name"] = change.name;
    json["folder"] = change.folder;
    if (difference.what & kIsRenamed) json["oldName"] = change.oldName;
    if (difference.what & kIsMoved) json["oldFolder"] = change.oldFolder;
    if (difference.what & kIsChanged)
      ForEachField(difference.a, difference.b, [&](const Field& before, const Field& after) {
        json["fields"].push_back(
            {{"name", before.name}, {"before", before.value}, {"after", after.value}});
      });
    std::cout << (any_ ? ",\n" : "[\n") << JsonText(json);
  }

  const RecordOutline& a_;
  const RecordOutline& b_;
  bool asJson_, any_ = false;
};

AnyDocument LoadForDiff(const std::string& file) try {
  return LoadDocument(file);
} catch (Failure& failure) {
  failure.exitCode = kTrouble;  // 1 is for documents that differ
  throw;
}

}  // namespace

bool PrintDifferences(const AnyDocument& a, const AnyDocument& b, bool asJson) {
  const RecordOutline before(a), after(b);
  Printer printer(before, after, asJson);
  DiffItems(before.items().data(), before.items().size(), after.items().data(),
            after.items().size(), printer);
  if (asJson) std::cout << (printer.any() ? "\n]\n" : "[]\n");
  return printer.any();
}

int Diff(const std::string& a, const std::string& b, bool asJson) {
  const AnyDocument before = LoadForDiff(a), after = LoadForDiff(b);
  if (before.index() != after.index())
    throw FileFailure(kTrouble, InputName(b),
                      "it is of another kind: " + std::string(KindOf(after).what) + " instead of " +
                          std::string(KindOf(before).what));
  return PrintDifferences(before, after, asJson) ? kBadFile : kFine;
}

}  // namespace vosmere::tool
