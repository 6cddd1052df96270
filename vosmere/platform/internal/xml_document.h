// XmlDocument, which loads an XML document with the platform's parser, within the limits that
// xml/read_xml.h states.
#pragma once

#include "vosmere/base/document_error.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere {

/// A loaded document. Its nodes are valid as long as this object.
class XmlDocument {
 public:
  XmlDocument() = default;
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;
  ~XmlDocument();

  /// Makes the Load operations keep the place of every element, where the parser reports it.
  void KeepPlaces() { keepsPlaces_ = true; }

  /// Each of the Load operations may be called once, on an empty object. They throw
  /// DocumentFailure, or std::bad_alloc.
  void LoadFile(const WChar* path);
  /// Loads null-terminated UTF-16. An encoding declared in the text is ignored.
  void LoadText(const WChar* text);
  /// Loads bytes, which must stay as they are as long as this object. The encoding is determined by
  /// their byte-order mark, or else by their declaration.
  void LoadBytes(const char* bytes, int length);

  /// The root element; a null handle only before a load.
  XmlNode Root() const;
  /// Where an element begins, from 1; 0 for what is not known or was not kept.
  void PlaceOf(const XmlNode& element, LONG* line, LONG* column) const;

 private:
  bool keepsPlaces_ = false;
  void* document_ = nullptr;
};

}  // namespace vosmere
