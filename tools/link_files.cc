// Writes trees of folders and web pages as OPML.
#include "tools/link_files.h"

#include "vosmere/cpp.h"
#include "vosmere/tree/tree_walk.h"

namespace vosmere::tool {
namespace {

const WChar* NameOf(RNode* link) {
  return link->item->GetName();
}
const WChar* UrlOf(RNode* page) {
  return static_cast<CUrlNode*>(page->item)->GetUrl();
}

}  // namespace

bool LinkOpml::FillData() {
  BeginDocument();
  Put("<opml version=\"2.0\">\n<head><title>");
  PutValue(NameOf(root_));
  Put("</title></head>\n<body>\n");
  std::size_t level = 1;
  const auto enter = [&](RNode* link) {
    const bool isFolder = link->type == NT_FOLDER;
    Indent(level);
    Put("<outline text=\"");
    PutValue(NameOf(link));
    if (isFolder) {
      Put("\">\n");
      ++level;
    } else {
      Put("\" type=\"link\" url=\"");
      PutValue(UrlOf(link));
      Put("\"/>\n");
    }
    return isFolder;
  };
  const auto leave = [&](RNode* link) {
    if (link->type != NT_FOLDER) return;
    Indent(--level);
    Put("</outline>\n");
  };
  WalkBelow(root_, enter, leave);
  Put("</body></opml>\n");
  return true;
}

}  // namespace vosmere::tool
