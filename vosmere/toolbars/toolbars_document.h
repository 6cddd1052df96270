// Writes and reads the document that stores the layout of the toolbars.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/toolbars/tbar_band_info.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes the layout of the toolbar bands.
///
/// Other threads may add bands meanwhile: the writer holds the lock of the list while it writes the
/// bands.
///
/// Intended: for a band that is not enabled, neither its visibility nor its position is written. It
/// gets the defaults when it is enabled again.
class VOSMERE_API CWriteToolbarXML : public CWriteXML {
 public:
  CWriteToolbarXML() = default;
  ~CWriteToolbarXML() override;

  /// The bands to write, not owned; they must outlive the writing. Without a list the document is
  /// empty.
  void SetTBarBandInfo(CTBarBandInfo* bands) { bands_ = bands; }

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  void FillBANDINFOToBuffer(TBARBANDINFO* band);

 private:
  void LoseOf(const TBARBANDINFO& band);

  CTBarBandInfo* bands_ = nullptr;
};

/// Reads the layout of the toolbar bands. If the root element is not "toolbars", the load succeeds
/// without a list. Titles and class identifiers are cut to fit into a TBARBANDINFO, between
/// characters.
///
/// DetachData returns the CTBarBandInfo*, which the caller frees with `delete`; null when there is
/// none. A list that is not detached is kept until the next document has been read.
///
/// Intended: the attributes for "enabled" and "visible", and their values, are recognised by how
/// they begin, case-insensitive (ASCII), because people edit these files. All other names must
/// match exactly.
///
/// Not restored, because CWriteToolbarXML does not write them: the size and the reserved fields of
/// a record, the visibility and position of a band that is not enabled, and the position of one
/// without container data.
class VOSMERE_API CReadVosmereXML : public CReadXML {
 public:
  CReadVosmereXML() = default;
  ~CReadVosmereXML() override;

 protected:
  void InvokeParser(XmlNode root) override;
};

}  // namespace vosmere
