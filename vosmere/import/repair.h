// What an import repairs in a document of another program, as it is reported.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The kinds of repairs.
enum class RepairKind : LONG {
  // Bytes.
  kEncoding,  ///< the encoding is not the one that the document declares
  kBytes,     ///< bytes that are not valid in the encoding
  kControl,   ///< control characters
  kPadding,   ///< zero bytes at the end
  kCutOff,    ///< the end of the document is missing
  // Markup.
  kAmpersand,  ///< an '&' that begins no reference
  kLessThan,   ///< a '<' that begins no tag
  kQuote,      ///< a quotation mark inside a value
  kNoQuotes,   ///< a value without quotation marks, or with only one
  kEntity,     ///< an entity that XML does not know
  kPrefix,     ///< a namespace prefix that is not declared
  kTwice,      ///< a second attribute with the same name
  kTooMany,    ///< more attributes than can be read
  kName,       ///< the name of an element or attribute
  kTag,        ///< something else inside a tag
  kEndTag,     ///< an end tag that is missing, or does not match
  kMarkup,     ///< something else that is not well-formed
  kOutside,    ///< something outside the root element
  // Lists and feeds.
  kType,         ///< the type of an outline
  kTitle,        ///< a title that differs from the text
  kNotInBody,    ///< an outline outside the body
  kBlanks,       ///< blanks around an address
  kTooLong,      ///< an address that is too long
  kSavedSearch,  ///< a saved search
  kRuns,         ///< an address that runs something when it is opened
  kDate,         ///< a date that cannot be read
  kSeparator,    ///< a line between bookmarks
  kTooDeep,      ///< a folder that is nested too deeply
  kTags,         ///< more tags than a page can have
};

/// One repair. The texts are UTF-8 on one line, valid during the report.
struct DocumentRepair {
  RepairKind kind = RepairKind::kMarkup;
  LONG line = 0;           ///< in the document, from 1
  LONG column = 0;         ///< in characters, from 1
  const char* what = "";   ///< what was wrong, for people, without a full stop
  const char* found = "";  ///< the beginning of what was found; empty if something was missing
  /// The beginning of what was made of it: empty if it was left out, the same as `found` if it was
  /// kept and is only mentioned.
  const char* made = "";
};

/// Called for each repair, with the `to` that was given. May throw std::bad_alloc, which makes the
/// import fail.
using RepairReport = void (*)(void* to, const DocumentRepair& repair);

}  // namespace vosmere
