// What diff and merge do with each field of an item.
#pragma once

#include <string>
#include <string_view>

#include "vosmere/base/types.h"

namespace vosmere {

enum class FieldForm { kText, kNumber, kMark, kTime, kTags, kLink };

/// What becomes of a field that both sides have changed.
enum class OnConflict {
  kNewer,    ///< the value of the newer item; the user hears about it
  kUnion,    ///< what either has added is in, what either has removed is out
  kEarlier,  ///< the smaller number
  kLater,    ///< the larger number
  kLeast,    ///< the least of two texts, so that all machines choose the same
  kQuietly,  ///< as kNewer, for what a program notes for itself: the user does not hear about it
};

struct FieldRule {
  unsigned number;   ///< in stored_fields.h
  const char* name;  ///< for the user; null for what diff does not show
  FieldForm form;
  OnConflict onConflict;

  /// Whether it is what the user has put in, as against times and states.
  bool IsContent() const {
    return onConflict == OnConflict::kNewer || onConflict == OnConflict::kUnion;
  }
};

/// The rule of a field; there is one for every number.
const FieldRule& RuleOf(unsigned number);

inline constexpr unsigned kNameField = 1, kAddedField = 3, kModifiedField = 4, kSetTimesField = 6,
                          kVersionField = 10, kDeletedField = 14;

/// Whether the values, in the bytes of stored_fields.h, are the same for the user: no text is the
/// same as an empty one.
bool SameValue(const FieldRule& rule, std::string_view a, std::string_view b);

/// Empty for null.
std::string TextToUtf8(const WChar* text);

/// A value as UTF-8 for the user.
std::string ValueToUtf8(const FieldRule& rule, std::string_view bytes);

}  // namespace vosmere
