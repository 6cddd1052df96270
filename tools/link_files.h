// Writers of trees of folders and web pages for other programs.
#pragma once

#include "vosmere/import/bookmarks_writer.h"

namespace vosmere::tool {

/// OPML 2.0 with an outline of type "link" for each page. (The OPML writer of the library writes
/// collections and leaves pages out.)
class LinkOpml : public CWriteLinks {
 public:
  using CWriteLinks::CWriteLinks;

 protected:
  bool FillData() override;
};

}  // namespace vosmere::tool
