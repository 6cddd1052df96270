// Loading an XML document by the platform's parser, within the bounds that xml/read_xml.h promises.
#pragma once

#include "vosmere/base/document_error.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere {

class XmlDocument {
 public:
  XmlDocument() = default;
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;
  ~XmlDocument();

  /// Has the place of every element kept by what is loaded then, where the parser tells it.
  void KeepPlaces() { keepsPlaces_ = true; }

  /// Each loads an empty document object once and throws DocumentFailure or std::bad_alloc.
  void LoadFile(const WChar* path);
  /// Zero-terminated UTF-16; an encoding that the text declares for itself is ignored.
  void LoadText(const WChar* text);
  /// The bytes tell their encoding themselves: by their mark, else by their declaration.
  void LoadBytes(const char* bytes, int length);

  /// The document's root element; null only before a load.
  XmlNode Root() const;
  /// Where an element begins, from 1; 0 for what is not known or was not kept.
  void PlaceOf(const XmlNode& element, LONG* line, LONG* column) const;

 private:
  bool keepsPlaces_ = false;
  void* document_ = nullptr;
};

}  // namespace vosmere
