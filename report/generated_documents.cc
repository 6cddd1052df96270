// Makes documents of every kind from seeds, loads each, saves it, loads that and shows it. Prints a
// line for each: its number, its kind, and the digests of what was saved and of what was shown;
// equal lines on two systems mean equal bytes. Then the same for the documents of tests/data.
//
//   report_generated_documents COUNT [NUMBER]     with a number, prints that document and what
//   became of it
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "report/mutants.h"
#include "tools/contents.h"
#include "tools/show.h"
#include "vosmere/cpp.h"
#include "vosmere/text/md5_text.h"

using namespace vosmere;
using namespace vosmere::report;

namespace {

constexpr const char* kGoldens[] = {
    "colct_item_ids.xml",   "colct_list.xml", "colct_profile.xml", "collection.rss",
    "collection_tree.opml", "ftp_sites.xml",  "notification.xml",  "page_data.xml",
    "search_engines.xml",   "tags.xml",       "toolbars.xml"};

constexpr std::string_view kValues[] = {"",
                                        "0",
                                        "1",
                                        "-1",
                                        "42",
                                        "2147483647",
                                        "2147483648",
                                        "99999999999",
                                        "true",
                                        "false",
                                        "x",
                                        "a b  c",
                                        " blanks ",
                                        "&lt;b&gt; &amp;amp; &quot;q&quot;",
                                        "\xC3\x85se \xE4\xB8\xAD\xE6\x96\x87",
                                        "\xF0\x9F\x98\x80",
                                        "http://a.example/?b=1&amp;c=2#d",
                                        "C:\\Folder\\File.ext",
                                        "../up/one",
                                        "javascript:alert(1)",
                                        "2008-03-01T10:20:30Z",
                                        "Sat, 01 Mar 2008 10:20:30 GMT",
                                        "1204366830",
                                        "a,b;c d",
                                        "tab\tand\r\nline",
                                        "&#9;&#10;&#13;",
                                        "&#x4E2D;",
                                        "rss",
                                        "link",
                                        "11111111-2222-3333-4444-555555555555",
                                        "%41%zz",
                                        "]]&gt;"};

using Range = std::pair<std::size_t, std::size_t>;

/// Where each element of a golden document stands; these have neither comments nor CDATA sections
/// with tags.
std::vector<Range> Elements(const std::string& text) {
  std::vector<Range> elements;
  std::vector<std::size_t> open;
  for (std::size_t at = 0; (at = text.find('<', at)) != text.npos;) {
    const std::size_t end = text.find('>', at);
    if (end == text.npos) break;
    if (text[at + 1] == '/') {
      if (open.empty()) break;
      elements.emplace_back(open.back(), end + 1);
      open.pop_back();
    } else if (text[end - 1] == '/') {
      elements.emplace_back(at, end + 1);
    } else if (text[at + 1] != '?' && text[at + 1] != '!') {
      open.push_back(at);
    }
    at = end;
  }
  return elements;
}

/// Doubles an element, moves it, or leaves it out; never the root.
void ChangeElement(Dice& dice, std::string& text) {
  const std::vector<Range> elements = Elements(text);
  if (elements.size() < 2) return;
  const auto [begin, end] = elements[dice.Below(elements.size() - 1)];
  const std::string element = text.substr(begin, end - begin);
  if (dice.OneIn(3)) {
    text.erase(begin, end - begin);
  } else {
    const std::size_t where =
        dice.OneIn(2) ? begin : elements[dice.Below(elements.size() - 1)].first;
    text.insert(where, element);
  }
}

/// Replaces some of the values of attributes and some of the texts.
std::string WithOtherValues(Dice& dice, const std::string& text) {
  std::string all;
  bool inTag = false;
  std::size_t tag = 0;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    all += c;
    ++at;
    if (c == '<') {
      inTag = true;
      tag = at - 1;
    }
    const bool beginsText = c == '>';
    if (beginsText) inTag = false;
    if (!beginsText && !(inTag && c == '"')) continue;
    const std::size_t end = text.find(beginsText ? '<' : '"', at);
    if (end == text.npos) continue;
    const bool inDeclaration = text[tag + 1] == '?';
    const bool isSpace = text.find_first_not_of(" \r\n\t", at) >= end;
    if (!(beginsText && isSpace) && !inDeclaration && dice.OneIn(5))
      all += dice.Of(kValues);
    else
      all += text.substr(at, end - at);
    if (!beginsText) all += '"';
    at = end + !beginsText;
  }
  return all;
}

std::string Golden(const char* name) {
  std::ifstream in(std::string(REPORT_DATA "/") + name, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string Generated(std::size_t number, const std::vector<std::string>& goldens) {
  Dice dice(number + 1);
  std::string text = goldens[number % goldens.size()];
  for (std::size_t i = dice.Below(6); i > 0; --i) ChangeElement(dice, text);
  return WithOtherValues(dice, text);
}

std::string DigestOf(const std::string& text) {
  WChar digest[33];
  CEncodingTool::GetWideCharLowerMD5(Wide(text), digest);
  return ToUtf8(digest);
}

struct Outcome {
  std::string kind = "refused";
  std::string saved, shown;
};

Outcome After(const std::string& text) {
  Outcome outcome;
  const Result<AnyDocument> document = Load<AnyDocument>(Bytes(text));
  if (!document) return outcome;
  outcome.kind = tool::KindOf(*document).what;
  const auto save = [](const auto& value) -> std::string {
    const Result<SavedBytes> saved = SaveToBytes(value);
    return saved ? saved->bytes : "";
  };
  outcome.saved = std::visit(save, *document);
  const Result<AnyDocument> again = Load<AnyDocument>(Bytes(outcome.saved));
  if (!again) return outcome;
  std::ostringstream out;
  tool::ShowJson(tool::ContentOf(*again), out);
  outcome.shown = out.str();
  return outcome;
}

void Print(const std::string& name, const Outcome& outcome) {
  std::printf("%s\t%s\t%s\t%s\n", name.c_str(), outcome.kind.c_str(),
              DigestOf(outcome.saved).c_str(), DigestOf(outcome.shown).c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  std::vector<std::string> goldens;
  for (const char* const name : kGoldens) goldens.push_back(Golden(name));
  if (argc > 2) {
    const std::string text = Generated(std::strtoul(argv[2], nullptr, 10), goldens);
    const Outcome outcome = After(text);
    std::printf("%s\n---- saved\n%s\n---- shown\n%s\n", text.c_str(), outcome.saved.c_str(),
                outcome.shown.c_str());
    return 0;
  }
  const std::size_t count = std::strtoul(argv[1], nullptr, 10);
  for (std::size_t i = 0; i < count; ++i) Print(std::to_string(i), After(Generated(i, goldens)));
  for (std::size_t i = 0; i < goldens.size(); ++i) Print(kGoldens[i], After(goldens[i]));
}
