// Building blocks of readers: tables of attributes, and a visitor over attributes.
//
// Nearly every reader looks up an attribute by its exact name and passes the value to a setter. A
// row of a table therefore names a setter, or a small function for an irregular case:
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

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

/// Whether a text equals an ASCII name (case-sensitive).
inline bool IsNamed(WideView text, std::string_view name) {
  if (text.size != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i)
    if (text[i] != static_cast<unsigned char>(name[i])) return false;
  return true;
}

/// The number at the start of a null-terminated text: optional white space and sign, then decimal
/// digits; the rest is ignored. 0 without digits; a number out of range is clamped to 32 bits.
VOSMERE_API LONG NumberFromText(const WChar* text);

/// Whether a text begins with an ASCII text, case-insensitive (ASCII).
inline bool BeginsWithNoCase(WideView text, std::string_view beginning) {
  if (text.size < beginning.size()) return false;
  for (std::size_t i = 0; i < beginning.size(); ++i)
    if (ascii::Fold(text[i]) != ascii::Fold(static_cast<unsigned char>(beginning[i]))) return false;
  return true;
}

/// Whether a text equals an ASCII name, case-insensitive (ASCII).
inline bool IsNamedNoCase(WideView text, std::string_view name) {
  return text.size == name.size() && BeginsWithNoCase(text, name);
}

/// A name in a table: a literal matches that name exactly, BeginningWith("...") every name with
/// this beginning, case-insensitive (ASCII).
struct RowName {
  std::string_view text;
  bool isBeginning = false;
  /// Whether these are the first and the last code units of a name, four of each: all of it.
  bool isWhole = false;
  std::uint64_t begin = 0;
  std::uint64_t end = 0;

  constexpr RowName(const char* name) : text(name) {
    if (text.size() < 4) return;
    isWhole = text.size() <= 8;
    begin = FourUnits(text);
    end = FourUnits(text.substr(text.size() - 4));
  }

  /// Looks at the end first: it differs more often than the beginning, which may be a prefix.
  bool Matches(WideView name) const {
    if (isBeginning) return BeginsWithNoCase(name, text);
    if (name.size != text.size()) return false;
    if (name.size < 4) return IsNamed(name, text);
    return FourUnits(name.end() - 4) == end && FourUnits(name.data) == begin &&
           (isWhole || IsNamed(name, text));
  }

 private:
  static constexpr std::uint64_t FourUnits(std::string_view text) {
    std::array<WChar, 4> units = {};
    for (std::size_t i = 0; i < 4; ++i) units[i] = static_cast<unsigned char>(text[i]);
    return std::bit_cast<std::uint64_t>(units);
  }
  static std::uint64_t FourUnits(const WChar* text) {
    std::uint64_t units;
    std::memcpy(&units, text, sizeof units);
    return units;
  }
};

constexpr RowName BeginningWith(const char* beginning) {
  RowName name(beginning);
  name.isBeginning = true;
  return name;
}

/// The first row whose `RowName name` matches, or null.
template <class Row, std::size_t N>
const Row* FindRow(const Row (&rows)[N], WideView name) {
  for (const Row& row : rows)
    if (row.name.Matches(name)) return &row;
  return nullptr;
}

/// Applies a text to a `Target`.
template <class Target>
using Apply = void (*)(Target& target, const WChar* text);

/// A row: an attribute, how its value is applied to a `Target`, and which values are valid.
template <class Target>
struct Field {
  RowName name;
  Apply<Target> apply;
  FitsTest fits = nullptr;  ///< null if every text is valid

  constexpr Field(RowName row, Apply<Target> action, FitsTest test = nullptr)
      : name(row), apply(action), fits(test) {}
  /// For an action that brings its own test.
  template <class Regular>
  requires requires { Regular::kFits; }
  constexpr Field(RowName row, Regular regular) : Field(row, regular, Regular::kFits) {}
};

/// Applies the first row with that name; false if there is none.
template <class Target, std::size_t N>
bool ApplyField(const Field<Target> (&fields)[N], std::type_identity_t<Target>& target,
                WideView name, const WChar* text) {
  const Field<Target>* const field = FindRow(fields, name);
  if (field) field->apply(target, text);
  return field != nullptr;
}

// Tests of values. FitsNumber: the text is a number in the form in which one is written, so that
// nothing is lost by NumberFromText. FitsTruth: the text is "true" or "false".

VOSMERE_API bool FitsNumber(const WChar* text);
inline bool FitsTruth(const WChar* text) {
  return IsNamed(WideView(text), "true") || IsNamed(WideView(text), "false");
}

// The regular actions. Each calls a setter: Text with the text, Number with NumberFromText of it,
// WhenTrue with true if the text is exactly "true", and otherwise not at all.

template <auto Setter, class Target>
void Text(Target& target, const WChar* text) {
  (target.*Setter)(text);
}

/// What Number is: the action of a row, with the test for its values.
template <auto Setter>
struct NumberRow {
  // The address of a function in a DLL is not a constant.
  static constexpr FitsTest kFits = [](const WChar* text) { return FitsNumber(text); };
  template <class Target>
  constexpr operator Apply<Target>() const {
    return [](Target& target, const WChar* text) { (target.*Setter)(NumberFromText(text)); };
  }
};
template <auto Setter>
inline constexpr NumberRow<Setter> Number;

/// The same for WhenTrue.
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

/// Does nothing, for an attribute that is known but not kept. It is reported as lost.
template <class Target>
void Ignored(Target&, const WChar*) {}
/// Does nothing, for an attribute whose meaning the kind of item implies. It is no loss.
template <class Target>
void Implied(Target&, const WChar*) {}

/// Calls `apply`, which applies a value of an element (an attribute or its text), and reports what
/// was lost, for example because the text was cut.
template <class Apply>
void ApplyReported(Report& report, WideView attribute, const WChar* value, FitsTest fits,
                   Apply apply) {
  const unsigned long before = CutTexts();
  apply();
  report.Takes(attribute, value, fits, CutTexts() != before);
}

/// The same for an attribute of the element that is being read. With a report, losses and unknown
/// attributes are reported.
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

/// Whether the root element has the name that the reader expects. Another name is traced.
inline bool IsRootNamed(const XmlNode& root, std::string_view name) {
  const XmlText found = root.Name();
  if (IsNamed(found.view(), name)) return true;
  Trace("Element Name=%s\n", found.c_str());
  return false;
}

/// Calls `visit(WideView name, const WChar* value)` for every attribute, in document order. An
/// attribute whose value is not a text is traced and skipped. A visitor that needs few of the
/// values may take `const XmlAttributes&` instead.
template <class Visit>
void ForEachAttribute(const XmlNode& element, Visit visit) {
  for (XmlAttributes attributes(element); attributes.Next();) {
    const XmlText& name = attributes.Name();
    if (!attributes.HasTextValue())
      Trace("Value is not BSTR  %s\n", name.c_str());
    else if constexpr (std::is_invocable_v<Visit, WideView, const XmlAttributes&>)
      visit(name.view(), attributes);
    else
      visit(name.view(), attributes.Value().c_str());
  }
}

/// The same for a visitor that reports the attributes that it does not know.
template <class Visit>
void ForEachAttribute(const Element& element, Visit visit) {
  if (element.report()) element.report()->TakesAttributes();
  ForEachAttribute(static_cast<const XmlNode&>(element), visit);
}

/// Applies all attributes of an element to `target`.
template <class Target, std::size_t N>
void ApplyFields(const Field<Target> (&fields)[N], std::type_identity_t<Target>& target,
                 const Element& element) {
  ForEachAttribute(element, [&](WideView name, const WChar* value) {
    ApplyField(fields, target, element.report(), name, value);
  });
}

}  // namespace vosmere::xml
