// Reading and writing the same trees with other XML libraries, in the simple way that their manuals
// show. The readers make the items of this library with its setters and its text conversion, so
// that only the XML part differs.
#pragma once

#include <string>

#include "vosmere/tree/tree_link.h"

namespace vosmere::bench {

/// Parses into libxml2's document, then walks over it. The caller owns the tree.
RNode* ReadWithLibxml2(const std::string& document);
/// The same with pugixml.
RNode* ReadWithPugixml(const std::string& document);

/// Only parses; false if that fails.
bool ParseWithLibxml2(const std::string& document);
bool ParseWithPugixml(const std::string& document);

/// Writes element by element with libxml2's xmlTextWriter.
bool SaveWithLibxml2(RNode* root, const char* path);

/// A pugixml document made in advance, so that only writing it is measured.
class PugixmlDocument {
 public:
  explicit PugixmlDocument(const std::string& document);
  ~PugixmlDocument();
  PugixmlDocument(const PugixmlDocument&) = delete;
  PugixmlDocument& operator=(const PugixmlDocument&) = delete;

  bool Save(const char* path) const;

 private:
  struct Content;
  Content* content_;
};

}  // namespace vosmere::bench
