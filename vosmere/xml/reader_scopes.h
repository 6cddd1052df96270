// Reading documents in which the meaning of an element depends on its parent.
//
// The children of an element are read in one scope, which is one bit. A row of the table says in
// which scopes an element is recognised, what is done with it, and in which scope its own children
// are read. An element without a row is ignored with everything inside it, except for elements that
// are recognised anywhere (kAnywhere): these are also found inside elements without a row and
// inside elements that are read for their text. A builder holds what is being built:
//
//     struct Shelf {
//       TList<CBook*>* head;
//       CBook* book;  // the last one
//     };
//     enum Scope : unsigned { kShelf = 1, kBook = 2 };
//
//     void AppendBook(Shelf& shelf, const Element&) { ... }
//
//     constexpr Field<CBook> kSizeFields[] = {{"pages", Number<&CBook::SetPages>}};
//
//     constexpr ScopedElement<Shelf> kElements[] = {
//         {kShelf, "book", AppendBook, kBook},
//         {kBook, "title", TextTo<&Shelf::book, &CBook::SetTitle>},
//         {kBook, "size", AttributesTo<&Shelf::book, kSizeFields>},
//     };
//
//     void CReadShelfXML::InvokeParser(XmlNode root) {
//       Shelf shelf = {};
//       if (IsRootNamed(root, "shelf")) ReadChildren(kElements, shelf, Reported(root), kShelf);
//     }
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "vosmere/platform/xml_node.h"
#include "vosmere/xml/nested_texts.h"
#include "vosmere/xml/reader_fields.h"
#include "vosmere/xml/reader_report.h"

namespace vosmere::xml {

/// A set of scopes, one bit each. The highest bit is reserved.
using Scopes = std::uint64_t;

/// For an element that is recognised in every scope.
inline constexpr Scopes kAnywhere = ~Scopes{0};

/// A row: an element, where it is recognised and how it is read.
template <class Builder>
struct ScopedElement {
  Scopes scopes;  ///< where it is recognised
  RowName name;
  /// Reads the element itself, before its children; null if only its children are read.
  void (*read)(Builder& builder, const Element& element);
  /// The scope of its children; 0 if only those with kAnywhere are read.
  Scopes within = 0;
  /// Called after the children if `within` is not 0; may be null.
  void (*leave)(Builder& builder) = nullptr;
  /// Called just before `leave`, but only with a report: reports what the element, which is the
  /// innermost, lacks and a copy would make up. May be null.
  void (*sayUnsaid)(Builder& builder, Report& report) = nullptr;
};

/// Like std::invoke, without the cost of including its heavy header in every reader.
template <class Callee, class Object, class... Arguments>
decltype(auto) Invoke(Callee callee, Object& object, const Arguments&... arguments) {
  if constexpr (std::is_member_object_pointer_v<Callee>)
    return (object.*callee);
  else if constexpr (std::is_member_function_pointer_v<Callee>)
    return (object.*callee)(arguments...);
  else
    return callee(object, arguments...);
}

// The regular actions of rows. `Target` is a member of the builder that is, or returns, a pointer
// to the object that is being read; if it is null, nothing happens.

/// Passes the text of the element to a setter or to a function (Target&, const WChar* text). With a
/// report, a text that fails the test `Fits` is reported.
template <auto Target, auto Apply, FitsTest Fits = nullptr, class Builder>
void TextTo(Builder& builder, const Element& element) {
  auto* const target = Invoke(Target, builder);
  if (!target) return;
  const XmlText text = element.Text();
  if (!element.report()) return static_cast<void>(Invoke(Apply, *target, text.c_str()));
  ApplyReported(*element.report(), {}, text.c_str(), Fits,
                [&] { Invoke(Apply, *target, text.c_str()); });
}

/// Applies a table of fields to the attributes of the element.
template <auto Target, auto& Fields, class Builder>
void AttributesTo(Builder& builder, const Element& element) {
  if (auto* const target = Invoke(Target, builder)) ApplyFields(Fields, *target, element);
}

/// Does nothing, for an element that is not read without that being a loss.
inline void NoLoss(const Element& element) {
  if (element.report()) element.report()->TakesText();
}
template <class Builder>
void NoLoss(Builder&, const Element& element) {
  NoLoss(element);
}

/// TextTo and AttributesTo together, for an element that has both.
template <auto Target, auto Apply, auto& Fields, class Builder>
void TextAndAttributesTo(Builder& builder, const Element& element) {
  TextTo<Target, Apply>(builder, element);
  AttributesTo<Target, Fields>(builder, element);
}

/// Calls a member function of the builder, with the element or without an argument.
template <auto Method, class Builder>
void Call(Builder& builder, const Element& element) {
  if constexpr (std::is_invocable_v<decltype(Method), Builder&, const Element&>)
    Invoke(Method, builder, element);
  else
    Invoke(Method, builder);
}
template <auto Method, class Builder>
void Call(Builder& builder) {
  Invoke(Method, builder);
}

/// Which of several elements with the same name and parent are read.
enum class Repeats {
  kAll,  ///< All of them, so that the last value stays.
  /// All of those whose row has both `read` and `within`, which make a new object each; of the
  /// others only the first.
  kFirst,
};

/// Visits elements in document order, without recursion, so that deep documents do not exhaust the
/// stack. At most 64 rows, because each has a bit in `seen`.
template <class Builder>
class ScopeReader {
 public:
  template <std::size_t N>
  ScopeReader(const ScopedElement<Builder> (&rows)[N], Builder& builder, Repeats repeats,
              Report* report)
      : rows_(rows),
        end_(rows + N),
        builder_(builder),
        report_(report),
        firstOnly_(repeats == Repeats::kFirst) {
    static_assert(N <= 64);
    for (const Row& row : rows)
      if (row.scopes & kUnknown) everywhere_ = true;
  }

  void ReadChildren(const XmlNode& parent, Scopes scope) {
    open_.push_back({parent.FirstChild(), scope});
    if (report_) report_->EnterRoot(parent);
    open_.back().isReported = report_ != nullptr;
    ReadOn();
  }

  void ReadElement(const XmlNode& element, Scopes scope) {
    open_.push_back({XmlNode(), scope});
    Read(element);
    ReadOn();
  }

 private:
  using Row = ScopedElement<Builder>;

  // The scope inside unknown elements, and inside elements that are read for their text. Only rows
  // with kAnywhere contain this bit.
  static constexpr Scopes kUnknown = Scopes{1} << 63;

  struct Open {
    XmlNode next;  // the next child to visit
    Scopes scope;
    const Row* row = nullptr;
    bool isInText = false;
    bool isReported = false;
    std::uint64_t seen = 0;  // a bit for each row that has had an element here
  };

  void ReadOn() {
    while (!open_.empty()) {
      const XmlNode node = open_.back().next;
      if (node) {
        open_.back().next.Advance();
        if (node.Type() == kXmlElement)
          Read(node);
        else if (report_)
          report_->Meet(node);
      } else {
        Leave();
      }
    }
  }

  void Leave() {
    const Row* const row = open_.back().row;
    const bool isReported = open_.back().isReported;
    if (open_.back().isInText) texts_.Leave();
    open_.pop_back();
    if (isReported && row && row->sayUnsaid) row->sayUnsaid(builder_, *report_);
    if (isReported) report_->Leave();
    if (row && row->leave) row->leave(builder_);
  }

  void Read(const XmlNode& element) {
    const Row* row = FindRow(element.Name().view());
    const bool isRepeated = row && !IsNew(*row);
    if (isRepeated) row = nullptr;
    const bool isInText = row && !row->within && everywhere_;
    if (isInText) texts_.Enter(element);
    if (report_)
      ReadReported(element, row, isRepeated);
    else if (row && row->read)
      row->read(builder_, Element(element, nullptr));
    if (row && row->within)
      open_.push_back({element.FirstChild(), row->within, row, false, report_ != nullptr});
    else if (everywhere_ || report_)
      open_.push_back({element.FirstChild(), kUnknown, row, isInText, report_ != nullptr});
  }

  void ReadReported(const XmlNode& element, const Row* row, bool isRepeated) {
    using As = Report::As;
    report_->Enter(element, row ? As::kKnown : isRepeated ? As::kRepeated : As::kUnknown);
    if (!row) return;
    if (row->within && row->scopes == kAnywhere && IsOpen(*row))
      report_->Lose(LossKind::kChanged, "an element inside another of its kind is moved out of it");
    if (row->read) row->read(builder_, Element(element, report_));
    report_->EndOfReading();
  }

  bool IsOpen(const Row& row) const {
    for (const Open& open : open_)
      if (open.row == &row) return true;
    return false;
  }

  const Row* FindRow(WideView name) const {
    const Scopes scope = open_.back().scope;
    for (const Row* row = rows_; row != end_; ++row)
      if (row->scopes & scope && row->name.Matches(name)) return row;
    return nullptr;
  }

  bool IsNew(const Row& row) {
    if (!firstOnly_ || (row.read && row.within)) return true;
    std::uint64_t& seen = open_.back().seen;
    const std::uint64_t bit = std::uint64_t{1} << (&row - rows_);
    const bool isNew = !(seen & bit);
    seen |= bit;
    return isNew;
  }

  const Row* rows_;
  const Row* end_;
  Builder& builder_;
  Report* report_;
  bool firstOnly_;
  bool everywhere_ = false;  // whether unknown elements may contain known ones
  NestedTexts texts_;        // the open elements that are read for their text
  std::vector<Open> open_;   // innermost last
};

/// Applies the rows to everything below `parent`, whose children are read in `scope`.
template <class Builder, std::size_t N>
void ReadChildren(const ScopedElement<Builder> (&rows)[N], Builder& builder, const Element& parent,
                  Scopes scope, Repeats repeats = Repeats::kAll) {
  ScopeReader<Builder>(rows, builder, repeats, parent.report()).ReadChildren(parent, scope);
}

/// Applies the rows to `element`, which is read in `scope`, and to everything below.
template <class Builder, std::size_t N>
void ReadElement(const ScopedElement<Builder> (&rows)[N], Builder& builder, const Element& element,
                 Scopes scope, Repeats repeats = Repeats::kAll) {
  ScopeReader<Builder>(rows, builder, repeats, element.report()).ReadElement(element, scope);
}

}  // namespace vosmere::xml
