// Loading an XML document. The parser is the platform's; what it may do is fixed here:
//
// - It is conforming, checks well-formedness, and knows UTF-8 and UTF-16 with and without mark,
//   ISO-8859-1 and windows-1252, and what else the platform has code pages for.
// - White space between elements is kept as text nodes.
// - Nothing outside the document is ever opened: no external entity, no external DTD, no network. A
//   document that merely names such a thing loads; one whose text needs it is refused.
// - Internal entities and attribute defaults are expanded, within bounds: a document that expands
//   out of proportion to its size is refused quickly and in little memory.
// - Elements nest at most `kMaxXmlDepth` levels where the parser is ours to set, else as deep as
// the
//   system's DOM loads; deeper documents are refused.
#pragma once

#include "vosmere/platform/xml_node.h"
#include "vosmere/xml/document_error.h"

namespace vosmere {

/// Nesting that loads on a stack of 512 KiB.
inline constexpr int kMaxXmlDepth = 1024;

/// Thrown by the seam's XML operations, and by readers that give up; caught by the loader. It never
/// crosses the library's interface.
struct DocumentFailure {
  DocumentError error;
};

class XmlDocument {
 public:
  XmlDocument() = default;
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;
  ~XmlDocument();

  /// Each loads an empty document object once and throws DocumentFailure or std::bad_alloc.
  void LoadFile(const WChar* path);
  /// Zero-terminated UTF-16; an encoding that the text declares for itself is ignored.
  void LoadText(const WChar* text);
  /// The bytes tell their encoding themselves: by their mark, else by their declaration.
  void LoadBytes(const char* bytes, int length);

  /// The document's root element; null only before a load.
  XmlNode Root() const;

 private:
  void* document_ = nullptr;
};

}  // namespace vosmere
