// Writes and reads the document that stores the texts of a published page.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/pages/page_data.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes the texts of a page. Those that are null are left out, empty ones are written.
///
/// Intended: lines end with a lone LF, except that of the root element's start tag, as they always
/// have.
class VOSMERE_API CWritePageDataXML : public CWriteXML {
 public:
  /// The record to write, not owned; it must outlive the writing. If it is null, the document is
  /// empty.
  explicit CWritePageDataXML(CPageData* data) : data_(data) {}
  ~CWritePageDataXML() override;

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  void FillPageData();
  /// Writes one element and its line end. Writes nothing for a null text, for a text that cannot be
  /// converted to UTF-8, and for a name of 125 bytes or more.
  void FillText(const WChar* value, const char* elementName);

 private:
  CPageData* data_;
};

/// Reads the texts of a page into an existing record. Texts that are not in the document keep their
/// value; if the root element is not "vsmpagedata", all do.
class VOSMERE_API CReadPageDataXML : public CReadXML {
 public:
  /// The record to fill, not owned; it must outlive the reading. It may be null to check whether a
  /// document loads.
  explicit CReadPageDataXML(CPageData* data) : data_(data) {}
  ~CReadPageDataXML() override;

  /// Loads a file into the record. Returns false when the document does not load (LastError has the
  /// reason). The record is not changed then, except when memory ran out: it has the texts that
  /// were read before.
  bool ReadFile(const WChar* path) { return LoadFile(path); }

 protected:
  void InvokeParser(XmlNode root) override;

  virtual void ParseXMLTree(XmlNode node);
  virtual void ProcessElementNode(XmlNode node);
  void ProcessElmRootScope(const XmlNode& node);
  void ProcessElmItemScope(const XmlNode& node);

 private:
  CPageData* data_;
};

}  // namespace vosmere
