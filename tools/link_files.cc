// Writes trees of folders and web pages as bookmark HTML and as OPML.
#include "tools/link_files.h"

#include <algorithm>

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

// An apostrophe is not escaped, since values are quoted with double quotes. "&apos;" is not part of
// early HTML versions, and not every browser that imports bookmarks knows it.
void LinkWriter::PutValue(const WChar* text) {
  std::u16string value = ToUtf16(text);
  const auto unspeakable = [](char16_t unit) { return unit < 0x20 || unit >= 0xFFFE; };
  std::replace_if(value.begin(), value.end(), unspeakable, u'\xFFFD');
  const Wide units(value);
  for (WideView rest(units);;) {
    const auto* const apostrophe = std::find(rest.begin(), rest.end(), '\'');
    PutEscaped(rest.First(apostrophe - rest.begin()));
    if (apostrophe == rest.end()) return;
    Put("'");
    rest = rest.From(apostrophe + 1 - rest.begin());
  }
}

void LinkWriter::Indent(std::size_t level) {
  while (level-- > 0) Put("    ");
}

bool BookmarkHtml::FillData() {
  Put("<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
      "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
      "<TITLE>");
  PutValue(NameOf(root_));
  Put("</TITLE>\n<H1>");
  PutValue(NameOf(root_));
  Put("</H1>\n<DL><p>\n");
  std::size_t level = 1;
  const auto enter = [&](RNode* link) {
    const bool isFolder = link->type == NT_FOLDER;
    Indent(level);
    Put("<DT>");
    if (isFolder) {
      Put("<H3>");
    } else {
      Put("<A HREF=\"");
      PutValue(UrlOf(link));
      Put("\">");
    }
    PutValue(NameOf(link));
    if (!isFolder) {
      Put("</A>\n");
      return false;
    }
    Put("</H3>\n");
    Indent(level++);
    Put("<DL><p>\n");
    return true;
  };
  const auto leave = [&](RNode* link) {
    if (link->type != NT_FOLDER) return;
    Indent(--level);
    Put("</DL><p>\n");
  };
  WalkBelow(root_, enter, leave);
  Put("</DL><p>\n");
  return true;
}

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
