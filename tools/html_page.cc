// A document as one self-contained HTML page.
#include "tools/html_page.h"

#include <algorithm>
#include <unordered_map>

#include "tools/html_parts.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

// Browsers nest at most 512 elements, and each level takes three. Deeper items are put on this one.
constexpr int kDeepest = 120;

/// A text in HTML, also inside quotes.
std::string Html(const std::string& text) {
  std::string html;
  for (const char c : Printable(text)) {
    switch (c) {
      case '&': html += "&amp;"; break;
      case '<': html += "&lt;"; break;
      case '>': html += "&gt;"; break;
      case '"': html += "&quot;"; break;
      case '\'': html += "&#39;"; break;
      default: html += c;
    }
  }
  return html;
}

std::string TextOf(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

/// Whether a browser may go to this address when it is clicked: not to a script.
bool IsLink(const std::string& address) {
  const auto begins = [&](std::string_view scheme) {
    return address.size() >= scheme.size() &&
           std::equal(scheme.begin(), scheme.end(), address.begin(),
                      [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); });
  };
  return begins("http://") || begins("https://") || begins("ftp://");
}

/// "[2][1]" for the first item in the second one, from the path of its element,
/// "/opml/body/outline[2]/outline/vsm:stat".
std::string NumbersOf(std::string_view path) {
  constexpr std::string_view kItems[] = {"outline",      "group", "tag",     "item",
                                         "searchEngine", "site",  "toolbar", "collection"};
  std::string numbers;
  while (!path.empty()) {
    path.remove_prefix(1);  // the slash
    const std::string_view step = path.substr(0, path.find('/'));
    path.remove_prefix(step.size());
    const std::size_t bracket = std::min(step.find('['), step.size());
    if (std::find(std::begin(kItems), std::end(kItems), step.substr(0, bracket)) ==
        std::end(kItems))
      continue;
    numbers += bracket == step.size() ? "[1]" : step.substr(bracket);
  }
  return numbers;
}

class Page {
 public:
  Page(const Record& content, const Losses& findings, std::ostream& out)
      : findings_(findings), out_(out) {
    // Items of a collection are in folders, and outlines may have been moved: then numbers mislead.
    bool isInOrder = content.kind != "collection";
    for (const Loss& loss : findings)
      if (loss.what.find("moved out") != loss.what.npos) isInOrder = false;
    for (const Loss& loss : findings)
      for (const LossPlace& place : loss.places) {
        const bool isPath = place.path.starts_with('/');
        if (isPath && !isInOrder) continue;
        at_[isPath ? NumbersOf(place.path) : place.path].push_back(&loss);
      }
  }

  void PrintItem(const Record& record, int depth) {
    const bool folds = static_cast<bool>(record.children), nests = folds && depth < kDeepest;
    if (nests)
      out_ << "<li><details" << (depth == 0 ? " open" : "") << "><summary " << KindOf(record);
    else
      out_ << "<li class=l " << KindOf(record);
    PrintRow(record);
    out_ << (nests ? "</summary><ul>\n" : "\n");
    PrintChildren(record, depth + 1);
    if (nests) out_ << "</ul></details>\n";
  }

  /// What is wrong with the document as a whole, or with something that is not shown.
  void PrintFindings() {
    out_ << "<ul id=findings>\n";
    for (const Loss& loss : findings_) {
      out_ << "<li class=w>" << Html(loss.what);
      if (loss.count > 1) out_ << " (" << loss.count << " times)";
      const char* separator = ": ";
      for (std::size_t i = 0; i < std::min<std::size_t>(loss.places.size(), 3); ++i) {
        out_ << separator << Html(ToString(loss.places[i]));
        separator = "; ";
      }
      out_ << "</li>\n";
    }
    out_ << "</ul>\n";
  }

 private:
  static std::string KindOf(const Record& record) {
    return "data-k=" + std::string(record.kind) + '>';
  }

  void PrintChildren(const Record& record, int depth) {
    const std::size_t length = numbers_.size();
    int number = 0;
    for (Records at = record.children; at; ++at) {
      const Record child = *at;
      numbers_ += '[' + std::to_string(++number) + ']';
      names_.push_back(NameOf(child));
      PrintItem(child, depth);
      names_.pop_back();
      numbers_.resize(length);
    }
  }

  /// The place of the current item as it is in a loss.
  std::string Place() const {
    std::string place;
    const std::size_t count = std::min(names_.size(), detail::kPlaceNames);
    for (std::size_t i = names_.size() - count; i < names_.size(); ++i)
      place += (place.empty() ? "" : " > ") + detail::ShortName(Wide(names_[i]));
    return names_.size() > count ? "... > " + place : place;
  }

  void PrintRow(const Record& record) {
    const std::string name = NameOf(record);
    std::string rest;
    bool isFirst = true;
    for (const Field& field : record.fields) {
      if (isFirst)
        out_ << "<b>" << (name.empty() ? "(no name)" : Html(name)) << "</b>";
      else if (!IsNothing(field.value))
        PrintField(field, rest);
      isFirst = false;
    }
    if (!rest.empty()) out_ << "<small>" << rest << "</small>";
    if (at_.empty()) return;
    PrintFindingsAt(Place());
    PrintFindingsAt(numbers_);
  }

  void PrintField(const Field& field, std::string& rest) {
    const std::string text = TextOf(field.value), name(field.name);
    const bool isMark = field.value.is_boolean() || field.value.is_number();
    if (field.traits & kOnLine && isMark) {
      if (field.value != false && field.value != 0)
        out_ << " <span class=\"t " << name << "\">" << name
             << (field.value == true ? "" : ' ' + Html(text)) << "</span>";
    } else if (field.traits & kOnLine) {
      out_ << " ";
      IsLink(text) ? out_ << "<a href=\"" << Html(text) << "\">" << Html(text) << "</a>"
                   : out_ << Html(text);
    } else if (field.traits & kOwnLine || name == "description" || name == "tags") {
      rest += (rest.empty() ? "" : "\n") + (name == "description" ? "" : name + ": ") + Html(text);
    }
  }

  void PrintFindingsAt(const std::string& place) {
    const auto found = at_.find(place);
    if (place.empty() || found == at_.end()) return;
    for (const Loss* loss : found->second)
      out_ << "<span class=w>" << Html(loss->what) << "</span>";
    at_.erase(found);
  }

  const Losses& findings_;
  std::ostream& out_;
  std::unordered_map<std::string, std::vector<const Loss*>> at_;  // by place, or by numbers
  std::vector<std::string> names_;                                // of the item and its folders
  std::string numbers_;  // those of the item and its folders among their siblings: "[2][1]"
};

}  // namespace

void ShowHtml(const Record& content, const std::string& title, const Losses& findings,
              std::ostream& out) {
  Page page(content, findings, out);
  const std::string name = Html(title);
  out << kPageHead << "<title>" << name << "</title>\n</head>\n<body>\n<header><h1>" << name
      << "</h1>\n<input id=find type=search placeholder=\"Search (/)\" aria-label=Search>\n"
         "<output id=found for=find></output>\n<button id=open>Unfold all</button>\n"
         "<button id=close>Fold all</button></header>\n";
  if (!findings.empty()) page.PrintFindings();
  out << "<ul id=tree>\n";
  page.PrintItem(content, 0);
  out << "</ul>\n" << kPageScript << "</body>\n</html>\n";
}

}  // namespace vosmere::tool
