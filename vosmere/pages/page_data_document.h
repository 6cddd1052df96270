#pragma once

#include "vosmere/base/export.h"
#include "vosmere/pages/page_data.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes the texts of a page, empty ones too; those that are null are left out.
///
/// Intended: its lines end with a lone LF, the root element's excepted; the files have always been
/// so.
class VOSMERE_API CWritePageDataXML : public CWriteXML {
 public:
  /// The record to write, which must outlive the writing. Without one the document is empty.
  explicit CWritePageDataXML(CPageData* data) : data_(data) {}
  ~CWritePageDataXML() override;

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  void FillPageData();
  /// One element, with its line end. Nothing for a null text, for one that cannot be converted, and
  /// for a name of 125 bytes or more.
  void FillText(const WChar* value, const char* elementName);

 private:
  CPageData* data_;
};

/// Reads the texts of a page into a record that is there already. What the document does not say
/// stays as it was, and so does everything when the root element is not "vsmpagedata".
class VOSMERE_API CReadPageDataXML : public CReadXML {
 public:
  /// The record to fill, which must outlive the reading; null is for seeing whether documents load.
  explicit CReadPageDataXML(CPageData* data) : data_(data) {}
  ~CReadPageDataXML() override;

  /// False leaves the record as it is, unless memory ran out on the way: then what was read by then
  /// is in it.
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
