// The verb "browse", by ncurses.
#define NCURSES_WIDECHAR 1
#include <curses.h>

#include <algorithm>
#include <clocale>
#include <cwchar>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/browse.h"
#include "tools/contents.h"
#include "tools/date.h"
#include "tools/document.h"
#include "tools/terminal.h"
#include "tools/text.h"
#include "tools/verbs.h"
#include "vosmere/base/ascii.h"

namespace vosmere::tool {
namespace {

constexpr int kEscape = 27;
constexpr char kKeys[] =
    "Enter open  Left/Right fold  / search  n next  u unread  f flag  s save  q quit";

/// The terminal belongs to curses during its lifetime.
class Screen {
 public:
  Screen() : screen_(newterm(nullptr, stdout, stdin)) {
    if (!screen_) throw Failure{kTrouble, "vosmere: error: the terminal is of an unknown kind"};
    cbreak();
    noecho();
    keypad(stdscr, true);
    set_escdelay(25);
    curs_set(0);
  }
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  ~Screen() {
    endwin();
    delscreen(screen_);
  }

 private:
  SCREEN* screen_;
};

/// Moves characters that fit into so many columns from a printable text into a wide one.
std::wstring TakeColumns(std::string_view& utf8, int columns) {
  std::wstring wide;
  std::mbstate_t state{};
  while (!utf8.empty()) {
    wchar_t c;
    std::size_t length = std::mbrtowc(&c, utf8.data(), utf8.size(), &state);
    const bool isKnown = length - 1 < utf8.size() && wcwidth(c) >= 0;
    if (!isKnown) c = L'?', length = 1, state = {};
    if (wcwidth(c) > columns) break;
    columns -= wcwidth(c);
    wide += c;
    utf8.remove_prefix(length);
  }
  return wide;
}

/// Prints a line of printable text, cut at the edge of the terminal.
void PrintLine(int y, std::string_view utf8, attr_t look = A_NORMAL) {
  const std::wstring line = TakeColumns(utf8, COLS);
  attrset(look);
  mvaddnwstr(y, 0, line.c_str(), static_cast<int>(line.size()));
  if (look != A_NORMAL) hline(' ', COLS);
  attrset(A_NORMAL);
}

std::string TextOf(const Field& field) {
  if (field.traits & kTime) return TimeText(field.value);
  return field.value.is_string() ? field.value.get<std::string>() : field.value.dump();
}

/// All that is known about an item, a line for each field and for each line of a text.
std::vector<std::string> NoteOf(const Record& record) {
  std::vector<std::string> lines;
  for (const Field& field : record.fields) {
    const bool isUnset = field.value == false || (field.value == 0 && !(field.traits & kTime));
    if (isUnset || IsNothing(field.value)) continue;
    const std::string text = std::string(field.name) + ": " + TextOf(field);
    for (std::size_t begin = 0, end; begin <= text.size(); begin = end + 1) {
      end = std::min(text.find('\n', begin), text.size());
      lines.push_back(Printable(text.substr(begin, end - begin)));
    }
  }
  return lines;
}

std::vector<std::wstring> Wrapped(const std::vector<std::string>& lines) {
  std::vector<std::wstring> wrapped;
  for (const std::string& line : lines) {
    std::string_view rest = line;
    do wrapped.push_back(TakeColumns(rest, std::max(COLS, 2)));
    while (!rest.empty());
  }
  return wrapped;
}

/// Shows a note until a key is pressed that does not scroll.
void ShowNote(const Record& record) {
  for (int top = 0;;) {
    const std::vector<std::wstring> lines = Wrapped(NoteOf(record));
    const int last = std::max(static_cast<int>(lines.size()) - (LINES - 1), 0);
    top = std::clamp(top, 0, last);
    erase();
    const int end = std::min(top + LINES - 1, static_cast<int>(lines.size()));
    for (int at = top; at < end; ++at)
      mvaddwstr(at - top, 0, lines[static_cast<std::size_t>(at)].c_str());
    PrintLine(LINES - 1, "Up/Down scroll, any other key: back", A_REVERSE);
    switch (getch()) {
      case KEY_DOWN: ++top; break;
      case KEY_UP: --top; break;
      case KEY_NPAGE: top += LINES - 1; break;
      case KEY_PPAGE: top -= LINES - 1; break;
      case KEY_RESIZE: break;
      default: return;
    }
  }
}

bool ContainsFolded(const std::string& text, const std::string& what) {
  return std::search(text.begin(), text.end(), what.begin(), what.end(),
                     [](char a, char b) { return ascii::Fold(a) == ascii::Fold(b); }) != text.end();
}

bool Matches(const Record& record, const std::string& what) {
  return std::any_of(record.fields.begin(), record.fields.end(), [&](const Field& field) {
    return field.value.is_primitive() == field.value.is_string() &&
           ContainsFolded(TextOf(field), what);
  });
}

/// Numbers of an item and of those around it among their siblings. Places are in document order.
using Place = std::vector<int>;

/// The first item below these records, in document order, that matches and comes after a place.
std::optional<Place> Find(Records at, const std::string& what, const Place& after, Place& here) {
  here.push_back(0);
  for (; at; ++at, ++here.back()) {
    const Record record = *at;
    if (here > after && Matches(record, what)) return here;
    if (std::optional<Place> found = Find(record.children, what, after, here)) return found;
  }
  here.pop_back();
  return {};
}

/// The content of a file now; nullopt for anything that cannot be saved to.
std::optional<FileMark> MarkOfFile(const std::string& file) {
  std::error_code ignored;
  if (IsStandard(file) || !std::filesystem::is_regular_file(PathOf(file), ignored)) return {};
  const Result<FileMark> mark = MarkOf(PathOf(file));
  return mark ? std::optional(*mark) : std::nullopt;
}

class Browser {
 public:
  explicit Browser(std::string file)
      : file_(std::move(file)),
        mark_(MarkOfFile(file_)),
        document_(LoadDocument(file_, &leftOut_)),
        content_(ContentOf(document_)) {
    if (!content_.isContainer)
      throw FileFailure(kBadFile, InputName(file_), "has no items; vosmere show prints it");
    Open(-1, content_.children, {});
  }

  void Run() {
    const Screen screen;
    while (!isDone_) {
      Draw();
      const int key = getch();
      const std::string asked = std::exchange(asked_, {});
      status_.clear();
      Do(key, asked);
    }
  }

 private:
  struct Row {
    Records at;
    Place place;
    bool isOpen = false;
  };

  Row* Selected() { return rows_.empty() ? nullptr : &rows_[static_cast<std::size_t>(selected_)]; }

  void Do(int key, const std::string& asked) {
    switch (key) {
      case KEY_DOWN:
      case 'j': ++selected_; break;
      case KEY_UP:
      case 'k': --selected_; break;
      case KEY_NPAGE:
      case ' ': selected_ += LINES - 2; break;
      case KEY_PPAGE: selected_ -= LINES - 2; break;
      case KEY_HOME:
      case 'g': selected_ = 0; break;
      case KEY_END:
      case 'G': selected_ = static_cast<int>(rows_.size()) - 1; break;
      case KEY_RIGHT:
      case 'l': Unfold(); break;
      case KEY_LEFT:
      case 'h': Fold(); break;
      case KEY_ENTER:
      case '\n': OpenSelected(); break;
      case '/': Ask(); [[fallthrough]];
      case 'n': FindNext(); break;
      case 'u': Change([](CNodeStat& stat) { stat.MarkAsUnread(!stat.IsUnread()); }); break;
      case 'f': Change([](CNodeStat& stat) { stat.SetFlag(stat.GetFlag() == 0); }); break;
      case 's': Save(asked == "s"); break;
      case 'q':
      case kEscape: Quit(asked == "q"); break;
      case ERR: isDone_ = true; break;  // the terminal is gone
      default: break;
    }
    selected_ = std::clamp(selected_, 0, std::max(static_cast<int>(rows_.size()) - 1, 0));
  }

  void Draw() {
    const int height = std::max(LINES - 2, 1);
    top_ = std::clamp(top_, std::max(selected_ - height + 1, 0), selected_);
    erase();
    PrintLine(0, InputName(file_) + ' ' + LineOf(content_) + (isChanged_ ? " (changed)" : ""),
              A_BOLD);
    const int end = std::min(top_ + height, static_cast<int>(rows_.size()));
    for (int at = top_; at < end; ++at)
      DrawRow(1 + at - top_, rows_[static_cast<std::size_t>(at)], at == selected_);
    PrintLine(LINES - 1, status_.empty() ? kKeys : status_, A_REVERSE);
  }

  static void DrawRow(int y, const Row& row, bool isSelected) {
    const Record record = *row.at;
    const char* const sign = !record.children ? "  " : row.isOpen ? "- " : "+ ";
    PrintLine(y, std::string(2 * (row.place.size() - 1), ' ') + sign + LineOf(record).substr(1),
              isSelected ? A_REVERSE : A_NORMAL);
  }

  /// Inserts rows for these records behind the row `index`, whose place is given.
  void Open(int index, Records at, Place place) {
    std::vector<Row> rows;
    place.push_back(0);
    for (; at; ++at, ++place.back()) rows.push_back({at, place});
    rows_.insert(rows_.begin() + (index + 1), std::make_move_iterator(rows.begin()),
                 std::make_move_iterator(rows.end()));
  }

  void Unfold() {
    Row* const row = Selected();
    if (!row || row->isOpen) return;
    row->isOpen = true;
    Open(selected_, (*row->at).children, Place(row->place));
  }

  /// Folds the selected row, or selects the one around it.
  void Fold() {
    const Row* row = Selected();
    if (!row) return;
    while (!row->isOpen && row->place.size() > 1 && selected_ > 0) {
      const std::size_t level = row->place.size();
      row = &rows_[static_cast<std::size_t>(--selected_)];
      if (row->place.size() < level) return;
    }
    const auto begin = rows_.begin() + selected_ + 1;
    rows_.erase(begin, std::find_if(begin, rows_.end(), [level = row->place.size()](const Row& r) {
                  return r.place.size() <= level;
                }));
    Selected()->isOpen = false;
  }

  void OpenSelected() {
    Row* const row = Selected();
    if (!row) return;
    const Record record = *row->at;
    if (!record.children) return ShowNote(record);
    row->isOpen ? Fold() : Unfold();
  }

  void Ask() {
    char typed[256] = "";
    PrintLine(LINES - 1, "/", A_REVERSE);
    echo();
    mvgetnstr(LINES - 1, 1, typed, sizeof typed - 1);
    noecho();
    if (*typed) sought_ = typed;
  }

  void FindNext() {
    if (sought_.empty() || rows_.empty()) return;
    Place here;
    std::optional<Place> found = Find(content_.children, sought_, Selected()->place, here);
    if (!found) {
      status_ = "Nothing was found below; searched again from the top";
      found = Find(content_.children, sought_, {}, here = {});
    }
    if (!found) return void(status_ = "Nothing was found");
    for (std::size_t levels = 1; levels <= found->size(); ++levels) {
      const Place around(found->begin(), found->begin() + static_cast<std::ptrdiff_t>(levels));
      const auto row =
          std::find_if(rows_.begin(), rows_.end(), [&](const Row& r) { return r.place == around; });
      selected_ = static_cast<int>(row - rows_.begin());
      if (levels < found->size()) Unfold();
    }
  }

  template <class Make>
  void Change(Make make) {
    CBaseNode* const item = Selected() ? (*Selected()->at).marked : nullptr;
    if (!item) return void(status_ = "This has no marks");
    make(*item->GetNodeStat());
    isChanged_ = true;
  }

  /// `isAgain` says that the user knows what will be lost.
  void Save(bool isAgain) try {
    if (!mark_) return void(status_ = "Only a file can be saved");
    SaveOptions options;
    options.expected = mark_;
    const Losses losses = SaveDocument(document_, file_, 0).losses;
    if (!isAgain && !(leftOut_.empty() && losses.empty())) {
      asked_ = "s";
      status_ = "Not saved yet: the file has what saving changes (vosmere check); s again saves";
      return;
    }
    const auto save = [&](const auto& value) {
      return vosmere::Save(PathOf(file_), value, options);
    };
    const Result<Saved> saved = std::visit(save, document_);
    if (!saved) throw FailureOf(InputName(file_), saved.error());
    mark_ = MarkOfFile(file_);
    isChanged_ = false;
    status_ = "Saved";
  } catch (const Failure& failure) {
    status_ = failure.message;
  }

  void Quit(bool isAgain) {
    isDone_ = isAgain || !isChanged_;
    asked_ = "q";
    status_ = "The changes are not saved: s saves, q again drops them";
  }

  const std::string file_;
  Losses leftOut_{0};
  std::optional<FileMark>
      mark_;  // taken before loading, so that no change by others is overwritten
  const AnyDocument document_;
  const Record content_;
  std::vector<Row> rows_;  // those that are visible if the terminal is high enough
  int selected_ = 0, top_ = 0;
  std::string sought_, status_;
  std::string asked_;  // a key that has to be pressed twice
  bool isChanged_ = false, isDone_ = false;
};

int Browse(const std::string& file) {
  if (!IsTerminal(Stream::kInput) || !IsTerminal(Stream::kOutput))
    throw Failure{kTrouble,
                  "vosmere: error: browse needs a terminal; vosmere show prints to files"};
  Browser(file).Run();
  return kFine;
}

}  // namespace

void AddBrowse(CLI::App& app, int& exitCode) {
  const auto file = std::make_shared<std::string>();
  CLI::App* const browse = app.add_subcommand(
      "browse", "Show a document on the terminal, to fold, search, read and mark its items");
  browse->footer(std::string(kKeys) + "\nNothing is changed unless it is saved.\n" + kExitCodes);
  browse->add_option("FILE", *file, "Document or folder of a store")->required();
  OnRun(*browse, exitCode, [file] { return Browse(*file); });
}

}  // namespace vosmere::tool
