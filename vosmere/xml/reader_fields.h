// What readers are made of: tables of names, and one visitor over attributes.
//
// Nearly every reader says "this exact name, first match, apply the text". A row names a setter;
// an irregular row names a small function:
//
//     constexpr Field<CFolderNode> kFolderFields[] = {
//         {"text", Text<&CFolderNode::SetName>},
//         {"version", Number<&CFolderNode::SetVersion>},
//         {"deleted", WhenTrue<&CFolderNode::SetAsDeleted>},
//     };
//     ForEachAttribute(element, [&](WideView name, const WChar* value) {
//       ApplyField(kFolderFields, *folder, name, value);
//     });
#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>

#include "vosmere/base/ascii.h"
#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/trace.h"
#include "vosmere/platform/xml_node.h"
#include "vosmere/xml/reader_report.h"

namespace vosmere::xml {

/// Exact comparison with an ASCII name, code unit by code unit.
inline bool IsNamed(WideView text, std::string_view name) {
  if (text.size != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i)
    if (text[i] != static_cast<unsigned char>(name[i])) return false;
  return true;
}

/// The number at the start of a text: white space, a sign, decimal digits; what follows is ignored.
/// 0 without digits, the nearest 32-bit number beyond the range.
VOSMERE_API LONG NumberFromText(const WChar* text);

/// Whether a text begins with an ASCII one, in any letter case.
inline bool BeginsWithNoCase(WideView text, std::string_view beginning) {
  if (text.size < beginning.size()) return false;
  for (std::size_t i = 0; i < beginning.size(); ++i)
    if (ascii::Fold(text[i]) != ascii::Fold(static_cast<unsigned char>(beginning[i]))) return false;
  return true;
}

/// Comparison with an ASCII name in any letter case.
inline bool IsNamedNoCase(WideView text, std::string_view name) {
  return text.size == name.size() && BeginsWithNoCase(text, name);
}

/// A name in a table: a literal is that name exactly, BeginningWith("...") every name that begins
/// so in any letter case.
struct RowName {
  std::string_view text;
  bool isBeginning = false;

  constexpr RowName(const char* name) : text(name) {}

  bool Matches(WideView name) const {
    return isBeginning ? BeginsWithNoCase(name, text) : IsNamed(name, text);
  }
};

constexpr RowName BeginningWith(const char* beginning) {
  RowName name(beginning);
  name.isBeginning = true;
  return name;
}

/// The first row that is so named, or null. Rows have a `RowName name`.
template <class Row, std::size_t N>
const Row* FindRow(const Row (&rows)[N], WideView name) {
  for (const Row& row : rows)
    if (row.name.Matches(name)) return &row;
  return nullptr;
}

/// What to do with a text for a `Target`.
template <class Target>
using Apply = void (*)(Target& target, const WChar* text);

/// What to do with the text of one field of a `Target`, and what it should be.
template <class Target>
struct Field {
  RowName name;
  Apply<Target> apply;
  FitsTest fits = nullptr;  ///< null for any text

  constexpr Field(RowName row, Apply<Target> action, FitsTest test = nullptr)
      : name(row), apply(action), fits(test) {}
  /// For rows that know it themselves.
  template <class Regular>
  requires requires { Regular::kFits; }
  constexpr Field(RowName row, Regular regular) : Field(row, regular, Regular::kFits) {}
};

/// Applies the first row with that name; false when there is none.
template <class Target, std::size_t N>
bool ApplyField(const Field<Target> (&fields)[N], std::type_identity_t<Target>& target,
                WideView name, const WChar* text) {
  const Field<Target>* const field = FindRow(fields, name);
  if (field) field->apply(target, text);
  return field != nullptr;
}

// Whether a text is the number that NumberFromText makes of it, and whether it is a truth.

VOSMERE_API bool FitsNumber(const WChar* text);
inline bool FitsTruth(const WChar* text) {
  return IsNamed(WideView(text), "true") || IsNamed(WideView(text), "false");
}

// The regular rows: the text itself, its number, and true for exactly "true" (anything else changes
// nothing).

template <auto Setter, class Target>
void Text(Target& target, const WChar* text) {
  (target.*Setter)(text);
}

template <auto Setter>
struct NumberRow {
  static constexpr FitsTest kFits = FitsNumber;
  template <class Target>
  constexpr operator Apply<Target>() const {
    return [](Target& target, const WChar* text) { (target.*Setter)(NumberFromText(text)); };
  }
};
template <auto Setter>
inline constexpr NumberRow<Setter> Number;

template <auto Setter>
struct WhenTrueRow {
  static constexpr FitsTest kFits = FitsTruth;
  template <class Target>
  constexpr operator Apply<Target>() const {
    return [](Target& target, const WChar* text) {
      if (IsNamed(WideView(text), "true")) (target.*Setter)(true);
    };
  }
};
template <auto Setter>
inline constexpr WhenTrueRow<Setter> WhenTrue;

/// Nothing, for what is known and not kept.
template <class Target>
void Ignored(Target&, const WChar*) {}
/// Nothing, for what the item is known by already.
template <class Target>
void Implied(Target&, const WChar*) {}

/// Applies `apply` to a value of an element, an attribute or its own text, and says how it went.
template <class Apply>
void ApplyReported(Report& report, WideView attribute, const WChar* value, FitsTest fits,
                   Apply apply) {
  const unsigned long before = CutTexts();
  apply();
  report.Takes(attribute, value, fits, CutTexts() != before);
}

/// The same as above for an attribute of the element that is being read.
template <class Target, std::size_t N>
void ApplyField(const Field<Target> (&fields)[N], std::type_identity_t<Target>& target,
                Report* report, WideView name, const WChar* value) {
  const Field<Target>* const field = FindRow(fields, name);
  if (!report) {
    if (field) field->apply(target, value);
  } else if (field && field->apply != Apply<Target>(Ignored<Target>)) {
    ApplyReported(*report, name, value, field->fits, [&] { field->apply(target, value); });
  } else {
    report->Unknown(name, value);
  }
}

/// Whether a document is of the kind that its reader reads; another root element is traced.
inline bool IsRootNamed(const XmlNode& root, std::string_view name) {
  const XmlText found = root.Name();
  if (IsNamed(found.view(), name)) return true;
  Trace("Element Name=%s\n", found.c_str());
  return false;
}

/// Calls `visit(WideView name, const WChar* value)` for every attribute in order. One whose value
/// is not a text is traced and skipped.
template <class Visit>
void ForEachAttribute(const XmlNode& element, Visit visit) {
  for (XmlAttributes attributes(element); attributes.Next();) {
    const XmlText& name = attributes.Name();
    if (attributes.HasTextValue())
      visit(name.view(), attributes.Value().c_str());
    else
      Trace("Value is not BSTR  %s\n", name.c_str());
  }
}

/// The same where the visitor takes what it knows, or says that it does not.
template <class Visit>
void ForEachAttribute(const Element& element, Visit visit) {
  if (element.report()) element.report()->TakesAttributes();
  ForEachAttribute(static_cast<const XmlNode&>(element), visit);
}

/// Applies all attributes of an element.
template <class Target, std::size_t N>
void ApplyFields(const Field<Target> (&fields)[N], std::type_identity_t<Target>& target,
                 const Element& element) {
  ForEachAttribute(element, [&](WideView name, const WChar* value) {
    ApplyField(fields, target, element.report(), name, value);
  });
}

}  // namespace vosmere::xml
