// Records what a reader uses of its document, and reports the rest.
#include "vosmere/xml/reader_report.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "vosmere/base/ascii.h"
#include "vosmere/platform/internal/xml_document.h"
#include "vosmere/xml/internal/escape.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::xml {
namespace {

// Names and paths are cut, so that reports about hostile documents stay cheap.
constexpr std::size_t kNameUnits = 100;
constexpr std::size_t kPathNames = 40;

std::string Utf8(WideView text) {
  const WideView name = text.First(kNameUnits);
  char bytes[kNameUnits * kUnitBytes];
  return {bytes, static_cast<std::size_t>(name.empty() ? 0 : PieceToUtf8(name, bytes))};
}

bool IsNamespace(std::string_view name) {
  return name == "xmlns" || name.substr(0, 6) == "xmlns:";
}

bool IsBlank(WideView text) {
  return std::all_of(text.begin(), text.end(), ascii::IsBlank<WChar>);
}

struct Open {
  XmlNode node;
  std::string name;
  std::size_t position;  // among its siblings of the same name, counted from 1
  bool isKept;
  bool takesText = false;
  bool takesAttributes = false;
  bool makesItem = false;
  std::unordered_map<std::string, std::size_t> children = {};  // how many of each name
  std::unordered_set<std::string> said = {};                   // "child", and "child attribute"
  std::unordered_set<std::string> texts = {};  // children that were read for their text
};

struct Remembered {
  std::string path;
  LONG line = 0;
  LONG column = 0;
};

}  // namespace

struct Report::State {
  LossReport report;
  void* to;
  const XmlDocument* document;
  std::vector<Open> open = {};
  std::vector<Remembered> remembered = {};

  std::string Path() const {
    std::string path;
    const std::size_t first = open.size() > kPathNames ? open.size() - kPathNames : 0;
    if (first > 0) path = "...";
    for (std::size_t i = first; i < open.size(); ++i) {
      path += '/' + open[i].name;
      if (open[i].position > 1) path += '[' + std::to_string(open[i].position) + ']';
    }
    return path;
  }

  void Lose(LossKind kind, const std::string& what) const {
    const std::string path = Path();
    DocumentLoss loss;
    loss.kind = kind;
    loss.what = what.c_str();
    loss.element = path.c_str();
    if (document && !open.empty()) document->PlaceOf(open.back().node, &loss.line, &loss.column);
    report(to, loss);
  }
};

Report::Report(LossReport report, void* to, const XmlDocument* document)
    : state_(new State{report, to, document}) {}

Report::~Report() = default;

void Report::Enter(const XmlNode& element, As as) {
  std::vector<Open>& open = state_->open;
  std::string name = Utf8(element.Name().view());
  std::size_t position = 1;
  bool isInsideDropped = false;
  if (!open.empty()) {
    position = ++open.back().children[name];
    isInsideDropped = !open.back().isKept;
    if (as == As::kKnown) open.back().said.insert(name);
  }
  open.push_back({element, std::move(name), position, as == As::kKnown});
  const std::string& known = open.back().name;
  // What is inside a dropped element is lost with it and not reported again.
  if (as == As::kUnknown && !isInsideDropped)
    state_->Lose(LossKind::kUnknown, "the element '" + known + "' is not kept");
  if (as == As::kRepeated)
    state_->Lose(LossKind::kRepeated, "'" + known + "' is repeated, and only one of them is kept");
}

void Report::EnterRoot(const XmlNode& element) {
  Enter(element, As::kKnown);
  ForEachAttribute(element, [this](WideView name, const WChar* value) { Unknown(name, value); });
}

void Report::Leave() {
  state_->open.pop_back();
}

void Report::Meet(const XmlNode& node) {
  const Open& open = state_->open.back();
  switch (node.Type()) {
    case kXmlComment: state_->Lose(LossKind::kNotKept, "comments are not kept"); break;
    case kXmlProcessingInstruction:
      state_->Lose(LossKind::kNotKept, "processing instructions are not kept");
      break;
    case kXmlText:
    case kXmlCData:
      if (open.isKept && !open.takesText && !IsBlank(node.Text().view()))
        state_->Lose(LossKind::kNotKept, "text between elements is not kept");
      break;
    default: break;
  }
}

void Report::TakesText() {
  state_->open.back().takesText = true;
}

void Report::TakesAttributes() {
  state_->open.back().takesAttributes = true;
}

void Report::MakesItem() {
  state_->open.back().makesItem = true;
}

void Report::EndOfReading() {
  std::vector<Open>& open = state_->open;
  const Open& element = open.back();
  if (!element.takesAttributes)
    ForEachAttribute(element.node,
                     [this](WideView name, const WChar* value) { Unknown(name, value); });
  // An object has only one text of a kind: of several, the last or the first stays.
  if (open.size() < 2 || !element.takesText || element.makesItem) return;
  if (!open[open.size() - 2].texts.insert(element.name).second)
    state_->Lose(LossKind::kRepeated,
                 "'" + element.name + "' is repeated, and only one of them is kept");
}

void Report::Unknown(WideView attribute, const WChar* value) {
  const std::string name = Utf8(attribute);
  const bool isOfRoot = state_->open.size() == 1 && name == "version";
  if (!*value || isOfRoot || IsNamespace(name)) return;
  state_->Lose(LossKind::kUnknown,
               "the attribute '" + name + "' of '" + state_->open.back().name + "' is not kept");
}

void Report::Takes(WideView attribute, const WChar* value, FitsTest fits, bool isCut) {
  std::vector<Open>& open = state_->open;
  const std::string name = Utf8(attribute);
  const std::string& element = open.back().name;
  if (*value && open.size() > 1) open[open.size() - 2].said.insert(element + ' ' + name);
  if (isCut)
    state_->Lose(LossKind::kCut, (name.empty() ? element : name) + " is too long and was cut");
  if (!fits || fits(value) || (!*value && !name.empty())) return;
  state_->Lose(LossKind::kChanged,
               "a value that is not understood or would be written differently (" + element +
                   (name.empty() ? "" : " " + name) + ")");
}

std::size_t Report::Remember() {
  Remembered& place = state_->remembered.emplace_back(Remembered{state_->Path()});
  if (state_->document)
    state_->document->PlaceOf(state_->open.back().node, &place.line, &place.column);
  return state_->remembered.size() - 1;
}

void Report::LoseAt(std::size_t remembered, LossKind kind, const char* what) {
  const Remembered& place = state_->remembered[remembered];
  DocumentLoss loss;
  loss.kind = kind;
  loss.what = what;
  loss.element = place.path.c_str();
  loss.line = place.line;
  loss.column = place.column;
  state_->report(state_->to, loss);
}

bool Report::Says(const char* name) const {
  return state_->open.back().said.count(name) > 0;
}

bool Report::Says(const char* element, const char* attribute) const {
  return Says((std::string(element) + ' ' + attribute).c_str());
}

void Report::Lose(LossKind kind, const char* what) {
  state_->Lose(kind, what);
}

}  // namespace vosmere::xml
