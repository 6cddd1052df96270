// Writers of trees of folders and web pages for other programs.
#pragma once

#include "vosmere/tree/tree_link.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere::tool {

/// The base of these writers. Does not own the tree, which must outlive the writer; the name of its
/// root is the title. Characters that markup cannot contain become U+FFFD.
class LinkWriter : public CWriteXML {
 public:
  explicit LinkWriter(RNode* root) : root_(root) {}

 protected:
  void PutValue(const WChar* text);
  void Indent(std::size_t level);

  RNode* root_;
};

/// The HTML bookmark file that browsers import.
class BookmarkHtml : public LinkWriter {
 public:
  using LinkWriter::LinkWriter;

 protected:
  bool FillData() override;
};

/// OPML 2.0 with an outline of type "link" for each page. (The OPML writer of the library writes
/// collections and leaves pages out.)
class LinkOpml : public LinkWriter {
 public:
  using LinkWriter::LinkWriter;

 protected:
  bool FillData() override;
};

}  // namespace vosmere::tool
