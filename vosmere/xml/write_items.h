// The base class of writers whose documents contain items.
#pragma once

#include <string_view>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Base of the writers of items: writes the elements that several documents share.
///
/// Intended: the irregular blanks inside these elements are those of existing files: two in the
/// element for an identity that was not converted, none before the "/>" of statistics without flag
/// and unread mark, and before a flag without unread mark a number that depends on the document.
class VOSMERE_API CWriteItems : public CWriteXML {
 public:
  ~CWriteItems() override;

 protected:
  /// The properties of an item besides its name, which a document may or may not store.
  enum Part : unsigned {
    kDescription = 1,
    kIdentity = 2,
    kVersion = 4,
    kDeleted = 8,
    kBuild = 16,
    kTimes = 32,
    kMarks = 64,  ///< unread and flag
    kAuthor = 128,
    kRelated = 256,
    kType = 512,
    kTags = 1024,
  };
  /// Reports the properties that the item has but that are not in `held`. Later reports by Lose
  /// refer to the same item.
  void LoseAllBut(unsigned held, const CBaseNode& item);
  void LoseAllBut(unsigned held, const CUrlNode& page);
  /// Whether a text has anything to lose; null has not.
  static bool IsThere(const WChar* text) { return text && *text; }
  /// Reports that an item is left out.
  void LoseWhole(const CBaseNode& item, const char* what);

  /// The largest number of code units in an identity, in any document.
  static constexpr std::size_t kLongestSyncId = 40;

  /// Writes the synchronisation element of an item. The identity must have at most kLongestSyncId
  /// code units; a version of 0 is left out. Returns false, with nothing written, if the identity
  /// cannot be converted to UTF-8.
  bool PutSync(WideView uuid, LONG version, bool deleted = false);
  /// Write what replaces an identity that is too long, or that cannot be converted.
  void PutSyncTooLong(WideView uuid);
  void PutSyncUnconverted();

  /// Writes the statistics element and a line end.
  void PutStat(const CNodeStat& stat, std::string_view blanksBeforeLoneFlag);

  /// Writes the statistics element of documents without namespace prefixes, which has only the
  /// times, and a line end.
  void PutStatDates(const CNodeStat& stat);

  /// Writes the element of the base build, its name preceded by `prefix`, and a line end; nothing
  /// for an item without a base build.
  void PutBuild(std::string_view prefix, const CBaseNode& item);
};

}  // namespace vosmere
