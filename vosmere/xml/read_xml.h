// The base class of all document readers.
#pragma once

#include "vosmere/base/document_error.h"
#include "vosmere/base/document_loss.h"
#include "vosmere/base/export.h"
#include "vosmere/platform/xml_node.h"
#include "vosmere/xml/reader_report.h"

namespace vosmere {

class XmlDocument;

/// Base of every document reader: loads an XML document and passes its root element to the reader's
/// InvokeParser. Normally used for one load. Not thread-safe; on Windows the thread must have
/// initialised COM.
///
/// The Load functions return false when the document cannot be read or is not well-formed, when it
/// exceeds a limit below, when memory runs out, or when the reader fails; LastError says why.
///
/// Intended: if the root element has no content, InvokeParser is not called and the load succeeds.
/// Such a document is complete, it only contains nothing.
///
/// What can be loaded, on every platform:
/// - UTF-8 and UTF-16 with and without byte-order mark, ISO-8859-1, windows-1252, and every other
///   encoding for which the platform has a code page. White space between elements is kept as text
///   nodes.
/// - Every document that is well-formed by XML 1.0, fifth edition, and no other. Prefixes of names
///   are free: one that is not declared, or declared against the rules of Namespaces in XML, is a
///   part of the name. Only Windows refuses two attributes of one element with the same local name
///   in the same namespace.
/// - Nothing outside the document is ever opened: no external entity, no external DTD, no network.
///   A document that declares such a thing loads; a document whose text uses it does not.
/// - Internal entities and attribute defaults are expanded. A document that expands out of
///   proportion to its size fails quickly and in little memory. So does a document with nested
///   items whose collected texts would grow out of proportion.
/// - A document type declaration may have about 256 KiB with its parameter entities expanded, and
///   the list of the values that an attribute may have 16 KiB.
/// - Elements may nest kMaxXmlDepth levels; on Windows as deep as the system's DOM loads. An
///   element may have about 2,000 attributes. On Linux about 250 namespaces may be in scope at
///   once, and a document may have 50,000 different names.
class VOSMERE_API CReadXML {
 public:
  CReadXML() = default;
  CReadXML(const CReadXML&) = delete;
  CReadXML& operator=(const CReadXML&) = delete;
  /// Frees the data if it was not detached.
  virtual ~CReadXML();

  /// Loads the file with this path (not a URL). Null fails.
  bool LoadFile(const WChar* path);
  /// Loads null-terminated XML text; the encoding that it declares is ignored. Null fails.
  bool LoadBSTRXML(const WChar* text);
  /// Loads `length` bytes; the byte-order mark or the declaration gives the encoding. Null fails.
  bool LoadXML(const char* bytes, int length);

  /// Reads a document that another reader has parsed. To be called from InvokeParser of `parsed`.
  bool ReadParsed(const XmlNode& root, const CReadXML& parsed);

  /// Returns what was built, which the caller then owns; the reader class determines the type. Null
  /// when there is nothing.
  void* DetachData();

  /// Sets the function that is called, with `to`, for everything in the documents loaded from now
  /// on that this reader does not keep or changes. Null, the default, turns this off; then it costs
  /// no time.
  void SetLossReport(LossReport report, void* to) {
    lossReport_ = report;
    lossReportTo_ = to;
  }

  /// Why the last load failed; kNone after a successful one.
  const DocumentError& LastError() const { return error_; }

 protected:
  /// Reads the document from its root element. May throw, which makes the load fail.
  virtual void InvokeParser(XmlNode root) = 0;

  /// An element together with the report of this load, if there is one, for the tables of a reader.
  xml::Element Reported(const XmlNode& element) const { return {element, report_}; }

  /// Throws std::bad_alloc if a text was lost during this load because memory ran out (setters fail
  /// silently). Checked at the end of every load; a reader must check before it replaces an earlier
  /// result.
  void ThrowIfTextsWereLost() const;

  /// Takes ownership of `data` until it is detached; deletes the data held before.
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
  xml::Report* report_ = nullptr;          // null outside a load, and without a loss report
  const XmlDocument* document_ = nullptr;  // null outside a load, and if not known
  DocumentError error_;
};

}  // namespace vosmere
