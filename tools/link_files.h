// Trees of folders and web pages as files that other programs read.
#pragma once

#include "vosmere/tree/tree_link.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere::tool {

/// What the writers share. The tree outlives the writer; its root gives the title. Characters that
/// markup cannot say become U+FFFD.
class LinkWriter : public CWriteXML {
 public:
  explicit LinkWriter(RNode* root) : root_(root) {}

 protected:
  void PutValue(const WChar* text);
  void Indent(std::size_t level);

  RNode* root_;
};

/// The bookmark file that every browser imports.
class BookmarkHtml : public LinkWriter {
 public:
  using LinkWriter::LinkWriter;

 protected:
  bool FillData() override;
};

/// OPML 2.0 with an outline of type "link" for each page. (The library's own OPML holds collections
/// and leaves pages out.)
class LinkOpml : public LinkWriter {
 public:
  using LinkWriter::LinkWriter;

 protected:
  bool FillData() override;
};

}  // namespace vosmere::tool
