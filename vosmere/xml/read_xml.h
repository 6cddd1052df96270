// The base of the document readers.
#pragma once

#include "vosmere/base/document_error.h"
#include "vosmere/base/document_loss.h"
#include "vosmere/base/export.h"
#include "vosmere/platform/xml_node.h"
#include "vosmere/xml/reader_report.h"

namespace vosmere {

class XmlDocument;

/// Base of every document reader: loads an XML document and hands its root element to the reader's
/// InvokeParser. Normally used for one load, on one thread; on Windows that thread has initialised
/// COM.
///
/// A loader returns false when the document cannot be read or is not well-formed, when it goes
/// beyond the bounds below, when memory ran out, or when the reader gives up; LastError says why. A
/// root element without any content is not parsed, and the load is true. (Intended: such a document
/// is whole, it just says nothing.)
///
/// What loads, on every platform:
/// - UTF-8 and UTF-16 with and without mark, ISO-8859-1, windows-1252, and what else the platform
///   has code pages for. White space between elements is kept as text nodes.
/// - Nothing outside the document is ever opened: no external entity, no external DTD, no network.
///   A document that merely names such a thing loads; one whose text needs it does not.
/// - Internal entities and attribute defaults are expanded. A document that expands out of
///   proportion to its size fails quickly and in little memory; so does one whose items stand so
///   deep in each other's texts that these would.
/// - A document type declaration has at most some 256 KiB with its parameter entities written out,
///   and the list of values that one attribute may have 16 KiB.
/// - Elements nest at most kMaxXmlDepth levels; on Windows as deep as the system's DOM loads. An
///   element has at most some 2,000 attributes; on Linux some 250 namespaces are in force at once,
///   and a document has 50,000 different names.
class VOSMERE_API CReadXML {
 public:
  CReadXML() = default;
  CReadXML(const CReadXML&) = delete;
  CReadXML& operator=(const CReadXML&) = delete;
  /// Frees the data if it is still held.
  virtual ~CReadXML();

  /// A file's path, not a URL. Null is a file that does not open.
  bool LoadFile(const WChar* path);
  /// Zero-terminated XML text; the encoding it declares for itself does not count. Null fails.
  bool LoadBSTRXML(const WChar* text);
  /// Raw bytes, whose mark or declaration tells the encoding. Null fails.
  bool LoadXML(const char* bytes, int length);

  /// A document that another reader, which is in its InvokeParser, has parsed.
  bool ReadParsed(const XmlNode& root, const CReadXML& parsed);

  /// Hands over what was built, of a type that the reader fixes; null when there is nothing.
  void* DetachData();

  /// Has everything reported that the documents to come hold and this reader does not take, or
  /// takes otherwise. Null ends that, as it begins; a load is as fast then as it is without.
  void SetLossReport(LossReport report, void* to) {
    lossReport_ = report;
    lossReportTo_ = to;
  }

  /// Why the last load failed; no fault after one that did not.
  const DocumentError& LastError() const { return error_; }

 protected:
  virtual void InvokeParser(XmlNode root) = 0;

  /// An element of the document on its way through the tables of a reader: with the report of this
  /// load, if there is one.
  xml::Element Reported(const XmlNode& element) const { return {element, report_}; }

  /// Throws std::bad_alloc when this load has lost a text for want of memory (setters fail
  /// silently). The loader asks at the end; a reader asks before it gives up an earlier result.
  void ThrowIfTextsWereLost() const;

  /// Keeps `data` until it is detached; frees what was kept before.
  template <class Data>
  void SetData(Data* data) {
    FreeData();
    data_ = data;
    deleteData_ = [](void* held) { delete static_cast<Data*>(held); };
  }

 private:
  template <class Read>
  bool ReadWith(Read read);
  void ReadRoot(const XmlNode& root, const XmlDocument* document);
  template <class Load>
  bool LoadWith(Load load);
  void FreeData();

  void* data_ = nullptr;
  void (*deleteData_)(void*) = nullptr;
  unsigned long lostTextsBefore_ = 0;
  LossReport lossReport_ = nullptr;
  void* lossReportTo_ = nullptr;
  xml::Report* report_ = nullptr;          // while a document is read
  const XmlDocument* document_ = nullptr;  // the same, where it is known
  DocumentError error_;
};

}  // namespace vosmere
