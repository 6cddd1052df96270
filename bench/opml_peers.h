// The same trees read and written by the libraries that one would use otherwise, in the plain way
// their manuals show. Readers build the library's own items through its setters and convert with
// its own conversion, so that only the way through the XML differs.
#pragma once

#include <string>

#include "vosmere/tree/tree_link.h"

namespace vosmere::bench {

/// Reads into libxml2's own document, then walks that. The caller frees the tree.
RNode* ReadWithLibxml2(const std::string& document);
/// The same over pugixml.
RNode* ReadWithPugixml(const std::string& document);

/// Only the parsing; false when it fails.
bool ParseWithLibxml2(const std::string& document);
bool ParseWithPugixml(const std::string& document);

/// Writes element by element with libxml2's xmlTextWriter.
bool SaveWithLibxml2(RNode* root, const char* path);

/// A ready pugixml document, and only the writing of it.
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
