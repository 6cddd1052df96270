// The base of the writers of items.
#pragma once

#include <string_view>

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Base of the writers of items: the elements that several documents have, each in the one form
/// that their readers know.
///
/// Intended: the blanks within these elements are what the files have always had: two in the mark
/// of an identity that was not converted, none before the end of the shortest statistics, and
/// before a flag alone as many as the document likes.
class VOSMERE_API CWriteItems : public CWriteXML {
 public:
  ~CWriteItems() override;

 protected:
  /// What an item may have beside its name, and a document a place for.
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
  /// Reports what the item has beyond these parts; what is reported next is lost of it, too.
  void LoseAllBut(unsigned held, const CBaseNode& item);
  void LoseAllBut(unsigned held, const CUrlNode& page);
  /// Reports an item that is left out.
  void LoseWhole(const CBaseNode& item, const char* what);

  /// Units that an identity has at most, in this document or any other.
  static constexpr std::size_t kLongestSyncId = 40;

  /// The synchronisation element of an item with that identity, which has at most kLongestSyncId
  /// units; its version is left out when it is 0. False, with nothing appended, when the identity
  /// cannot be converted.
  bool PutSync(WideView uuid, LONG version, bool deleted = false);
  /// What stands in the place of an identity that is too long, or cannot be converted.
  void PutSyncTooLong(WideView uuid);
  void PutSyncUnconverted();

  /// The statistics element with its line end.
  void PutStat(const CNodeStat& stat, std::string_view blanksBeforeLoneFlag);

  /// The statistics element of documents without prefixes, with its line end: the times alone.
  void PutStatDates(const CNodeStat& stat);

  /// The element of the base build with its line end, its name behind `prefix`; nothing for an item
  /// without one.
  void PutBuild(std::string_view prefix, const CBaseNode& item);
};

}  // namespace vosmere
