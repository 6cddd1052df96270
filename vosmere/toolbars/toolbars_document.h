#pragma once

#include "vosmere/base/export.h"
#include "vosmere/toolbars/tbar_band_info.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes the layout of the toolbar bands.
///
/// Bands may come and go on other threads meanwhile: writing holds their lock from the first to the
/// last one.
///
/// Intended: of a band that is not enabled, neither whether it is visible nor its place is written.
/// A band comes back where it is by default.
class VOSMERE_API CWriteToolbarXML : public CWriteXML {
 public:
  CWriteToolbarXML() = default;
  ~CWriteToolbarXML() override;

  /// The bands to write, which must outlive the writing. Without any the document is empty.
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

/// Reads the layout of the toolbar bands. A root element other than "toolbars" loads, and gives
/// none. Titles and class identifiers are cut to fit into a TBARBANDINFO, between characters.
///
/// DetachData hands over a CTBarBandInfo*, now the caller's to delete; null when there is none. It
/// stays until it is detached or another document has been read.
///
/// Intended: whether a band is enabled and visible is recognised by how the attributes and their
/// values begin, in any letter case, since people edit these files. All other names are compared
/// exactly.
///
/// What does not come back from a document that CWriteToolbarXML wrote, because it is not in it:
/// the size and the reserved fields of a record, and its place where there is none in the document.
class VOSMERE_API CReadVosmereXML : public CReadXML {
 public:
  CReadVosmereXML() = default;
  ~CReadVosmereXML() override;

 protected:
  void InvokeParser(XmlNode root) override;
};

}  // namespace vosmere
