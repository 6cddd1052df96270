// Collects repairs and finds their lines and columns.
#include "vosmere/import/internal/repair_list.h"

#include <algorithm>

#include "vosmere/import/internal/utf8_text.h"

namespace vosmere::importing {
namespace {

constexpr std::size_t kExcerptBytes = 60;

/// In the order of RepairKind.
constexpr const char* kWhat[] = {
    "the encoding is not the declared one",
    "not valid in the encoding",
    "control characters",
    "zero bytes at the end",
    "the end of the document is missing",
    "an '&' that begins no reference",
    "a '<' that begins no tag",
    "a quotation mark inside a value",
    "quotation marks are missing",
    "an entity that XML does not know",
    "a namespace prefix that is not declared",
    "a second attribute with this name",
    "too many attributes",
    "a name that is written otherwise",
    "not well-formed inside a tag",
    "an end tag is missing or does not match",
    "not well-formed",
    "outside the root element",
    "the type of an outline",
    "the title differs from the text",
    "an outline outside the body",
    "blanks around an address",
    "an address that is too long",
    "a saved search",
    "an address that runs something when it is opened",
    "a date that cannot be read",
    "a line between bookmarks",
    "a folder that is nested too deeply",
    "too many tags",
};

std::string Excerpt(std::string_view text) {
  std::size_t size = std::min(text.size(), kExcerptBytes);
  while (size < text.size() && IsContinuation(text[size])) --size;
  std::string excerpt(text.substr(0, size));
  for (char& c : excerpt)
    if (static_cast<unsigned char>(c) < ' ' || c == 0x7F) c = ' ';
  return size < text.size() ? excerpt + "..." : excerpt;
}

/// A place in a text that only moves forward.
struct Place {
  std::string_view text;
  std::size_t at = 0;
  LONG line = 1;
  LONG column = 1;

  void MoveTo(std::size_t target) {
    for (; at < target && at < text.size(); ++at) {
      const bool endsLine = text[at] == '\n' ? at == 0 || text[at - 1] != '\r' : text[at] == '\r';
      if (endsLine) ++line;
      if (endsLine || text[at] == '\n')
        column = 1;
      else if (!IsContinuation(text[at]))
        ++column;
    }
  }
};

}  // namespace

void RepairList::Add(RepairKind kind, std::size_t at, std::string_view found,
                     std::string_view made) {
  if (entries_.size() < kMostKept)
    entries_.push_back({kind, at, Excerpt(found), Excerpt(made)});
  else
    ++more_;
}

void RepairList::Report(std::string_view text, RepairReport report, void* to) {
  std::stable_sort(entries_.begin(), entries_.end(),
                   [](const Entry& a, const Entry& b) { return a.at < b.at; });
  Place place{text};
  for (const Entry& entry : entries_) {
    place.MoveTo(entry.at);
    report(to, {entry.kind, place.line, place.column, kWhat[static_cast<int>(entry.kind)],
                entry.found.c_str(), entry.made.c_str()});
  }
}

}  // namespace vosmere::importing
