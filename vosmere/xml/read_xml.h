#pragma once

#include "vosmere/base/export.h"
#include "vosmere/platform/xml_node.h"
#include "vosmere/xml/document_error.h"

namespace vosmere {

/// Base of every document reader: loads an XML document and hands its root element to the reader's
/// InvokeParser. Normally used for one load, on one thread; on Windows that thread has initialised
/// COM.
///
/// A loader returns false when the document cannot be read or is not well-formed, when something
/// within it goes beyond the bounds of platform/xml_document.h, or when the reader gives up;
/// LastError says why. A root element without any content is not parsed, and the load is true.
class VOSMERE_API CReadXML {
 public:
  CReadXML() = default;
  CReadXML(const CReadXML&) = delete;
  CReadXML& operator=(const CReadXML&) = delete;
  /// Frees the data if it is still held.
  virtual ~CReadXML();

  /// Null is a file that does not open.
  bool LoadFile(const WChar* path);
  /// Zero-terminated XML text; the encoding it declares for itself does not count. Null fails.
  bool LoadBSTRXML(const WChar* text);
  /// Raw bytes, whose mark or declaration tells the encoding. Null fails.
  bool LoadXML(const char* bytes, int length);

  /// Hands over what was built, of a type that the reader fixes; null when there is nothing.
  void* DetachData();

  /// Why the last load failed; no fault after one that did not.
  const DocumentError& LastError() const { return error_; }

 protected:
  virtual void InvokeParser(XmlNode root) = 0;

  /// Keeps `data` until it is detached; frees what was kept before.
  template <class Data>
  void SetData(Data* data) {
    FreeData();
    data_ = data;
    deleteData_ = [](void* held) { delete static_cast<Data*>(held); };
  }

 private:
  template <class Load>
  bool LoadWith(Load load);
  void FreeData();

  void* data_ = nullptr;
  void (*deleteData_)(void*) = nullptr;
  DocumentError error_;
};

}  // namespace vosmere
