// Readers of documents whose elements mean something only where they stand.
//
// The children of an element are read in one scope, a bit of its own. A row says in which scopes an
// element counts, what is done with it, and in which scope its own children are read; what no row
// names is ignored with all that is in it. A builder holds what is being built:
//
//     struct Shelf {
//       TList<CBook*>* head;
//       CBook* book;  // the last one
//     };
//     enum Scope : unsigned { kShelf = 1, kBook = 2 };
//
//     void AppendBook(Shelf& shelf, const XmlNode&) { ... }
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
//       if (IsRootNamed(root, "shelf")) ReadChildren(kElements, shelf, root, kShelf);
//     }
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>

#include "vosmere/platform/xml_node.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere {

/// A bit for each scope; the highest one is taken.
using Scopes = std::uint64_t;

/// For an element that counts wherever elements are looked at, within unknown ones too.
inline constexpr Scopes kAnywhere = ~Scopes{0};

template <class Builder>
struct ScopedElement {
  Scopes scopes;  ///< where it counts
  RowName name;
  /// Null when the element says nothing itself.
  void (*read)(Builder& builder, const XmlNode& element);
  /// The scope of its children; 0 when what is in it is not looked at.
  Scopes within = 0;
  /// Behind its children; may be null.
  void (*leave)(Builder& builder) = nullptr;
};

// The regular rows. `Target` is a member of the builder that is, or returns, a pointer to what is
// being read; while that is null they do nothing.

/// Its text goes to a setter, or to a function (Target&, const WChar* text).
template <auto Target, auto Apply, class Builder>
void TextTo(Builder& builder, const XmlNode& element) {
  if (auto* const target = std::invoke(Target, builder))
    std::invoke(Apply, *target, element.Text().c_str());
}

/// Its attributes go to a table of fields.
template <auto Target, auto& Fields, class Builder>
void AttributesTo(Builder& builder, const XmlNode& element) {
  auto* const target = std::invoke(Target, builder);
  if (!target) return;
  ForEachAttribute(element, [=](WideView name, const WChar* value) {
    ApplyField(Fields, *target, name, value);
  });
}

/// Both, for an element that has attributes beside its text.
template <auto Target, auto Apply, auto& Fields, class Builder>
void TextAndAttributesTo(Builder& builder, const XmlNode& element) {
  TextTo<Target, Apply>(builder, element);
  AttributesTo<Target, Fields>(builder, element);
}

/// A member function of the builder is called, with the element or without.
template <auto Method, class Builder>
void Call(Builder& builder, const XmlNode& element) {
  if constexpr (std::is_invocable_v<decltype(Method), Builder&, const XmlNode&>)
    std::invoke(Method, builder, element);
  else
    std::invoke(Method, builder);
}
template <auto Method, class Builder>
void Call(Builder& builder) {
  std::invoke(Method, builder);
}

/// Which of several equal elements beside each other count.
enum class Repeats {
  kAll,  ///< each is applied, and so the last one stays
  /// Rows that make something new, which is to say read it and then its children, count each time;
  /// of all others the first.
  kFirst,
};

/// Goes over elements in document order. At most 64 rows.
template <class Builder>
class ScopeReader {
 public:
  template <std::size_t N>
  ScopeReader(const ScopedElement<Builder> (&rows)[N], Builder& builder, Repeats repeats)
      : rows_(rows),
        end_(rows + N),
        builder_(builder),
        firstOnly_(repeats == Repeats::kFirst),
        everywhere_(
            std::any_of(rows, rows + N, [](const Row& row) { return row.scopes & kUnknown; })) {
    static_assert(N <= 64);
  }

  void ReadChildren(const XmlNode& parent, Scopes scope) {
    Seen seen = 0;
    for (XmlNode child = parent.FirstChild(); child; child = child.NextSibling())
      if (child.Type() == kXmlElement) ReadElement(child, scope, seen);
  }

  void ReadElement(const XmlNode& element, Scopes scope) {
    Seen seen = 0;
    ReadElement(element, scope, seen);
  }

 private:
  using Row = ScopedElement<Builder>;
  using Seen = std::uint64_t;  // a bit for each row

  static constexpr Scopes kUnknown = Scopes{1} << 63;  // the scope within unknown elements

  void ReadElement(const XmlNode& element, Scopes scope, Seen& seen) {
    const Row* const row = FindRow(element.Name().view(), scope);
    if (row && IsNew(*row, seen)) {
      if (row->read) row->read(builder_, element);
      if (row->within) ReadChildren(element, row->within);
      if (row->leave) row->leave(builder_);
    } else if (everywhere_) {
      ReadChildren(element, kUnknown);
    }
  }

  const Row* FindRow(WideView name, Scopes scope) const {
    for (const Row* row = rows_; row != end_; ++row)
      if (row->scopes & scope && row->name.Matches(name)) return row;
    return nullptr;
  }

  bool IsNew(const Row& row, Seen& seen) const {
    if (!firstOnly_ || (row.read && row.within)) return true;
    const Seen bit = Seen{1} << (&row - rows_);
    const bool isNew = !(seen & bit);
    seen |= bit;
    return isNew;
  }

  const Row* rows_;
  const Row* end_;
  Builder& builder_;
  bool firstOnly_;
  bool everywhere_;  // whether unknown elements may hold known ones
};

/// Applies the rows to everything below `parent`, whose own children are read in `scope`.
template <class Builder, std::size_t N>
void ReadChildren(const ScopedElement<Builder> (&rows)[N], Builder& builder, const XmlNode& parent,
                  Scopes scope, Repeats repeats = Repeats::kAll) {
  ScopeReader<Builder>(rows, builder, repeats).ReadChildren(parent, scope);
}

/// Applies the rows to `element`, as one that stands in `scope`, and to everything below.
template <class Builder, std::size_t N>
void ReadElement(const ScopedElement<Builder> (&rows)[N], Builder& builder, const XmlNode& element,
                 Scopes scope, Repeats repeats = Repeats::kAll) {
  ScopeReader<Builder>(rows, builder, repeats).ReadElement(element, scope);
}

}  // namespace vosmere
