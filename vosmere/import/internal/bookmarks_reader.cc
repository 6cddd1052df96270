// Reads bookmark files.
#include "vosmere/import/internal/bookmarks_reader.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <new>
#include <string>
#include <vector>

#include "vosmere/base/chain.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/import/internal/addresses.h"
#include "vosmere/import/internal/references.h"
#include "vosmere/import/internal/tokens.h"
#include "vosmere/import/internal/utf8_text.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/internal/new_link.h"

namespace vosmere::importing {
namespace {

constexpr std::size_t kDeepest = 1000;  // levels of folders; the documents of trees have few more
constexpr std::size_t kMostTags = 256;  // of a page; each is compared with all before it

/// The text of a piece of markup as the setters take it.
class Plain {
 public:
  explicit Plain(std::string_view raw) {
    const std::string utf8 = WithoutReferences(Trimmed(raw));
    const int size = static_cast<int>(utf8.size());
    units_.resize(utf8.size() + 1);
    units_[BytesToWide(kCodePageUtf8, utf8.data(), size, units_.data(), size)] = 0;
  }
  operator const WChar*() const { return units_.data(); }

 private:
  std::vector<WChar> units_;
};

/// A time in seconds, or in thousandths or millionths of seconds as some programs write it.
bool ReadTime(std::string_view text, LONG* seconds) {
  std::int64_t time = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), time);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return false;
  constexpr std::int64_t kLatest = std::int64_t{100} * 1000 * 1000 * 1000;
  while (time > kLatest) time /= 1000;
  *seconds = static_cast<LONG>(time);
  return *seconds == time;
}

class BookmarksReader {
 public:
  BookmarksReader(std::string_view text, RepairList& repairs)
      : text_(text), repairs_(repairs), tokens_(text, Markup::kHtml, &repairs) {
    root_ = NewLink(CFolderNode::New(), NT_FOLDER, nullptr);
  }
  BookmarksReader(const BookmarksReader&) = delete;
  BookmarksReader& operator=(const BookmarksReader&) = delete;
  ~BookmarksReader() { DeleteTree(root_); }

  RNode* Read() {
    Token token;
    while (tokens_.Next(token)) Take(token);
    EndText(text_.size());
    if (open_.size() > 0) Repair(RepairKind::kCutOff, text_.size(), {}, "</DL>");
    return std::exchange(root_, nullptr);
  }

 private:
  using Handler = void (BookmarksReader::*)(const Token&);
  struct Row {
    std::string_view name;
    Handler start;
    Handler end;
  };
  enum class Text { kNone, kTitle, kHeading, kName, kDescription };

  /// The row of a tag's name; null if it is not known.
  static const Row* FindRow(std::string_view name);

  void Repair(RepairKind kind, std::size_t at, std::string_view found, std::string_view made) {
    repairs_.Add(kind, at, found, made);
  }
  RNode* Folder() const { return open_.empty() ? root_ : open_.back(); }

  void Take(const Token& token) {
    if (token.kind == TokenKind::kCut) Repair(RepairKind::kCutOff, token.at, token.text, {});
    if (token.kind != TokenKind::kStart && token.kind != TokenKind::kEnd) return;
    const Row* const row = FindRow(token.name);
    if (!row) return;
    EndText(token.at);
    const Handler take = token.kind == TokenKind::kStart ? row->start : row->end;
    if (take) (this->*take)(token);
  }

  // Texts reach up to the next tag that is known.

  void BeginText(Text kind, const Token& tag) {
    textKind_ = kind;
    textAt_ = tag.end;
  }
  void EndText(std::size_t end) {
    const Text kind = std::exchange(textKind_, Text::kNone);
    if (kind == Text::kNone) return;
    const Plain text(WithoutTags(text_.substr(textAt_, end - textAt_)));
    if (kind == Text::kDescription)
      last_->SetDescription(text);
    else
      (kind == Text::kTitle ? root_->item : last_)->SetName(text);
  }
  static std::string WithoutTags(std::string_view raw) {
    std::string plain;
    Tokens tokens(raw, Markup::kHtml, nullptr);
    for (Token token; tokens.Next(token);)
      if (token.kind == TokenKind::kText) plain += token.text;
    return plain;
  }
  void Title(const Token& tag) { BeginText(Text::kTitle, tag); }
  void Description(const Token& tag) {
    if (last_) BeginText(Text::kDescription, tag);
  }

  // Folders. A list belongs to the heading before it.

  void Heading(const Token& tag) {
    const bool isTooDeep = open_.size() >= kDeepest;
    if (isTooDeep) Repair(RepairKind::kTooDeep, tag.at, tag.text, tag.text);
    heading_ = NewLink(CFolderNode::New(), NT_FOLDER, Folder());
    last_ = heading_->item;
    ReadTimes(tag);
    if (isTooDeep) heading_ = nullptr;
    BeginText(Text::kHeading, tag);
  }
  void BeginList(const Token&) {
    open_.push_back(heading_ ? heading_ : Folder());
    heading_ = nullptr;
  }
  void EndList(const Token&) {
    if (!open_.empty()) open_.pop_back();
    heading_ = nullptr;
    last_ = nullptr;
  }
  void Separator(const Token& tag) { Repair(RepairKind::kSeparator, tag.at, tag.text, {}); }

  // Pages and feeds.

  void Anchor(const Token& tag) {
    const std::string_view href = ValueOf(tag, "HREF"), feed = ValueOf(tag, "FEEDURL");
    last_ = nullptr;
    heading_ = nullptr;
    if (SameNoCase(Trimmed(href).substr(0, 6), "place:"))
      return Repair(RepairKind::kSavedSearch, tag.at, tag.text, {});
    Trimmed(feed).empty() ? NewPage(tag, href) : NewFeed(tag, feed, href);
    ReadTimes(tag);
    BeginText(Text::kName, tag);
  }
  void NewPage(const Token& tag, std::string_view href) {
    CUrlNode* const page = CUrlNode::New();
    NewLink(page, NT_URL, Folder());
    last_ = page;
    page->SetUrl(Plain(FixAddress(href, tag.at, &repairs_)));
    ReadTags(*page, ValueOf(tag, "TAGS"), tag.at);
  }
  // The addresses of collections have backslashes, as those that the reader of trees makes.
  void NewFeed(const Token& tag, std::string_view feed, std::string_view href) {
    CColctNode* const colct = CColctNode::New();
    NewLink(colct, NT_COLCT, Folder());
    last_ = colct;
    std::string path(FixAddress(feed, tag.at, &repairs_));
    std::replace(path.begin(), path.end(), '/', '\\');
    colct->SetUrl(Plain(path));
    colct->SetRelationUrl(Plain(FixAddress(href, tag.at, &repairs_)));
  }

  static std::string_view ValueOf(const Token& tag, std::string_view name) {
    for (const Attribute& attribute : tag.attributes)
      if (SameNoCase(attribute.name, name)) return attribute.value;
    return {};
  }

  void ReadTimes(const Token& tag) {
    constexpr struct {
      std::string_view name;
      ULONG which;
    } kTimes[] = {{"ADD_DATE", CNodeStat::kAdded},
                  {"LAST_MODIFIED", CNodeStat::kModified},
                  {"LAST_VISIT", CNodeStat::kLastVisited}};
    for (const auto& row : kTimes) {
      const std::string_view value = Trimmed(ValueOf(tag, row.name));
      LONG time = 0;
      if (value.empty() || value == "0") continue;
      if (ReadTime(value, &time))
        last_->GetNodeStat()->SetStatTime(time, time, time, row.which);
      else
        Repair(RepairKind::kDate, tag.at, value, {});
    }
  }

  void ReadTags(CUrlNode& page, std::string_view list, std::size_t at) {
    CUrlProp::TagList* tags = nullptr;
    if (Trimmed(list).empty()) return;
    CUrlProp* const prop = page.GetUrlProp();
    if (!prop) throw std::bad_alloc();
    for (std::size_t count = 0; !list.empty() && count < kMostTags; ++count) {
      const Plain tag(list.substr(0, list.find(',')));
      list = list.find(',') == list.npos ? std::string_view() : list.substr(list.find(',') + 1);
      prop->SetTagsList(tags);
      if (!*tag || prop->HasTag(tag)) continue;
      CUrlProp::TagList* const cell = CUrlProp::CreateRBstrItem(tag);
      if (!cell) throw std::bad_alloc();
      chain::Append(tags, cell);
      prop->SetTagsList(tags);
    }
    if (!Trimmed(list).empty()) Repair(RepairKind::kTags, at, list, {});
  }

  std::string_view text_;
  RepairList& repairs_;
  Tokens tokens_;
  RNode* root_ = nullptr;
  std::vector<RNode*> open_;   // the folders of the open lists
  RNode* heading_ = nullptr;   // the folder whose list may follow
  CBaseNode* last_ = nullptr;  // the item that a name or description belongs to
  Text textKind_ = Text::kNone;
  std::size_t textAt_ = 0;
};

const BookmarksReader::Row* BookmarksReader::FindRow(std::string_view name) {
  using R = BookmarksReader;
  static constexpr Row kRows[] = {
      {"A", &R::Anchor, nullptr},         {"DT", nullptr, nullptr},
      {"DD", &R::Description, nullptr},   {"P", nullptr, nullptr},
      {"DL", &R::BeginList, &R::EndList}, {"H3", &R::Heading, nullptr},
      {"HR", &R::Separator, nullptr},     {"H1", &R::Title, nullptr},
      {"TITLE", &R::Title, nullptr},
  };
  return FindNoCase(kRows, name);
}

}  // namespace

bool IsBookmarkFile(std::string_view bytes) {
  constexpr std::string_view kMarks[] = {"<!DOCTYPE NETSCAPE-Bookmark-file",
                                         "<!DOCTYPE html",
                                         "<html",
                                         "<meta",
                                         "<title",
                                         "<h1",
                                         "<dl"};
  constexpr std::size_t kBeginning = 1024;
  const std::size_t first = std::min(bytes.substr(0, kBeginning).find('<'), bytes.size());
  return std::any_of(std::begin(kMarks), std::end(kMarks), [&](std::string_view mark) {
    return SameNoCase(bytes.substr(first, mark.size()), mark);
  });
}

RNode* ReadBookmarkFile(std::string_view text, RepairList& repairs) {
  return BookmarksReader(text, repairs).Read();
}

}  // namespace vosmere::importing
