// Writes trees of folders, pages and feeds as bookmark files.
#include "vosmere/import/bookmarks_writer.h"

#include <algorithm>
#include <string>

#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/tree_link.h"
#include "vosmere/tree/tree_walk.h"
#include "vosmere/xml/internal/escape.h"

namespace vosmere {

CWriteLinks::~CWriteLinks() = default;
CWriteBookmarks::~CWriteBookmarks() = default;

// An apostrophe is not escaped, since values are quoted with double quotes. "&apos;" is not part of
// early HTML versions, and not every browser that imports bookmarks knows it.
void CWriteLinks::PutValue(const WChar* text) {
  const WideView view(text);
  if (view.empty()) return;
  std::basic_string<WChar> value(view.begin(), view.end());
  const auto isUnspeakable = [](WChar unit) { return !IsXmlUnit(unit); };
  std::replace_if(value.begin(), value.end(), isUnspeakable, WChar{0xFFFD});
  for (WideView rest(value.data(), value.size());;) {
    const auto* const apostrophe = std::find(rest.begin(), rest.end(), '\'');
    PutEscaped(rest.First(static_cast<std::size_t>(apostrophe - rest.begin())));
    if (apostrophe == rest.end()) return;
    Put("'");
    rest = rest.From(static_cast<std::size_t>(apostrophe + 1 - rest.begin()));
  }
}

void CWriteLinks::Indent(std::size_t level) {
  while (level-- > 0) Put("    ");
}

bool CWriteBookmarks::FillData() {
  if (!root_) return false;
  BeginFile();
  std::size_t level = 1;
  const auto enter = [&](RNode* link) {
    if (!LoseOf(link)) return false;
    Indent(level);
    if (link->type != NT_FOLDER) {
      PutPage(static_cast<const CUrlNode&>(*link->item), link->type == NT_COLCT);
      return false;
    }
    BeginFolder(*link->item);
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

void CWriteBookmarks::BeginFile() {
  const WChar* const name = root_->item->GetName();
  LoseAllBut(0, *root_->item);
  Put("<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
      "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
      "<TITLE>");
  PutValue(name);
  Put("</TITLE>\n<H1>");
  PutValue(name);
  Put("</H1>\n<DL><p>\n");
}

/// Reports what does not come back of an item; false for one that is left out.
bool CWriteBookmarks::LoseOf(const RNode* link) {
  const bool isPage = link->type == NT_URL || link->type == NT_COLCT;
  if (!link->item) return false;
  if (link->type == NT_FOLDER)
    LoseAllBut(kDescription | kTimes, *link->item);
  else if (link->type == NT_URL)
    LoseAllBut(kDescription | kTimes | kTags, static_cast<const CUrlNode&>(*link->item));
  else if (link->type == NT_COLCT)
    LoseAllBut(kDescription | kTimes | kRelated, static_cast<const CUrlNode&>(*link->item));
  else
    LoseWhole(*link->item, "what is no folder, page or feed is left out");
  return isPage || link->type == NT_FOLDER;
}

void CWriteBookmarks::BeginFolder(const CBaseNode& folder) {
  Put("<DT><H3");
  PutTimes(*folder.GetNodeStat());
  Put(">");
  PutValue(folder.GetName());
  Put("</H3>\n");
  PutDescription(folder);
}

void CWriteBookmarks::PutPage(const CUrlNode& page, bool isFeed) {
  Put("<DT><A ");
  if (isFeed) {  // its addresses have backslashes, see CReadColctTreeOPML
    Put("FEEDURL=\"");
    PutEscapedPath(WideView(page.GetUrl()));
    Put("\" ");
  }
  Put("HREF=\"");
  PutValue(isFeed ? page.GetRelationUrl() : page.GetUrl());
  Put("\"");
  PutTimes(*page.GetNodeStat());
  PutTags(page);
  Put(">");
  PutValue(page.GetName());
  Put("</A>\n");
  PutDescription(page);
}

void CWriteBookmarks::PutTimes(const CNodeStat& stat) {
  LONG added = 0, modified = 0, lastVisited = 0;
  stat.GetStatTime(&added, &modified, &lastVisited);
  const auto put = [&](const auto& name, LONG time, ULONG which) {
    if (!(stat.GetSetTimes() & which)) return;
    Put(name);
    PutNumber(time);
    Put("\"");
  };
  put(" ADD_DATE=\"", added, CNodeStat::kAdded);
  put(" LAST_VISIT=\"", lastVisited, CNodeStat::kLastVisited);
  put(" LAST_MODIFIED=\"", modified, CNodeStat::kModified);
}

void CWriteBookmarks::PutTags(const CUrlNode& page) {
  const CUrlProp* const prop = page.GetUrlProp();
  const CUrlProp::TagList* tag = prop ? prop->GetTagsHead() : nullptr;
  if (!tag) return;
  Put(" TAGS=\"");
  for (; tag; tag = tag->next) {
    const WideView view(tag->data);
    LoseIf(std::find(view.begin(), view.end(), ',') != view.end(),
           "a tag with a comma comes back as two", LossKind::kChanged);
    PutValue(tag->data);
    if (tag->next) Put(",");
  }
  Put("\"");
}

void CWriteBookmarks::PutDescription(const CBaseNode& item) {
  if (!*item.GetDescription()) return;
  Put("<DD>");
  PutValue(item.GetDescription());
  Put("\n");
}

}  // namespace vosmere
