#include "tools/loss_on_load.h"

#include <algorithm>

#include "tools/text.h"
#include "vosmere/xml/parse_xml.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::tool {
namespace {

constexpr std::string_view kUnknown = "?";  // the scope of an element without a word

bool IsNamespace(std::string_view name) {
  return name == "xmlns" || name.starts_with("xmlns:");
}

bool IsBlank(WideView text) {
  return std::all_of(text.begin(), text.end(), [](WChar unit) {
    return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
  });
}

bool Breaks(WideView value) {
  return std::any_of(value.begin(), value.end(),
                     [](WChar unit) { return unit == '"' || unit == '<' || unit == '&'; });
}

/// An element around the node that is visited.
struct Open {
  XmlNode node;
  std::string_view scope;  ///< of what stands in it
  bool isItem;
  bool isDropped;
  bool keepsText;                             ///< or it goes as a whole
  std::vector<std::string_view> single = {};  ///< elements inside of which one is kept
  std::string label = {};                     ///< once it was asked for
};

class Auditor : public CParseXML {
 public:
  Auditor(const Vocabulary& vocabulary, Findings& findings)
      : vocabulary_(vocabulary), findings_(findings) {}

  void ParseXMLTree(XmlNode node) override { GoThroughChildNodes(node); }
  bool sawBreaker() const { return sawBreaker_; }

 protected:
  void OnEnterNode(XmlNode node) override {
    switch (node.Type()) {
      case kXmlComment: Complain("comments are not kept"); break;
      case kXmlProcessingInstruction: Complain("processing instructions are not kept"); break;
      case kXmlText:
      case kXmlCData:
        if (!open_.empty() && !open_.back().keepsText && !IsBlank(node.Text().view()))
          Complain("text between elements is not kept");
        break;
      default: break;
    }
  }

  void ProcessElementNode(XmlNode node) override {
    const std::string name = ToUtf8(node.Name().c_str());
    const Words words = WordsFor(node);
    AuditRepeated(words, name);
    const bool isInsideDropped = !open_.empty() && open_.back().isDropped;
    const std::string_view around = Scope();
    open_.push_back(OpenOf(node, words));
    if (!open_.back().isDropped)
      AuditKept(node, name, words, around);
    else if (!isInsideDropped)
      Complain(words.AreKnown() ? std::string(words.First().lost)
                                : "the element '" + Printable(name) + "' is not kept");
  }

  void OnLeaveNode(XmlNode node) override {
    if (node.Type() == kXmlElement) open_.pop_back();
  }

 private:
  std::string_view Scope() const { return open_.empty() ? "" : open_.back().scope; }

  /// For an element that stands in the innermost open one.
  Words WordsFor(const XmlNode& node) const {
    return {vocabulary_,
            vocabulary_.nameOf ? vocabulary_.nameOf(node) : ToUtf8(node.Name().c_str()), Scope()};
  }

  Open OpenOf(const XmlNode& node, const Words& words) const {
    Open open{node, vocabulary_.looksThrough ? Scope() : kUnknown, false, true, true};
    if (!words.AreKnown()) return open;
    open.isItem = words.First().isItem;
    open.isDropped = !words.First().lost.empty();
    open.keepsText = open.isDropped || words.DemandOn("=");
    if (open.isItem || !vocabulary_.looksThrough) open.scope = words.First().element;
    return open;
  }

  void Complain(const std::string& what, const XmlNode& inside = {}) {
    findings_.Add(what, [&] { return PlaceOf(inside); });
  }

  std::string PlaceOf(const XmlNode& inside) {
    std::vector<std::string> labels;
    for (auto open = open_.rbegin(); open != open_.rend() && labels.size() <= kPlaceDepth; ++open)
      if (open->isItem) labels.insert(labels.begin(), LabelOf(*open));
    if (inside) {
      Open item = OpenOf(inside, WordsFor(inside));
      labels.push_back(LabelOf(item));
    }
    return Place(labels);
  }

  /// What people know an item of a file by.
  const std::string& LabelOf(Open& item) const {
    if (!item.label.empty()) return item.label;
    xml::ForEachAttribute(item.node, [&](WideView name, const WChar* value) {
      if (*value &&
          (xml::IsNamed(name, "text") || xml::IsNamed(name, "title") || xml::IsNamed(name, "name")))
        item.label = Label(value);
    });
    if (item.label.empty()) item.label = Label(NamingText(item).c_str());
    return item.label;
  }

  XmlText NamingText(const Open& item) const {
    for (const char* const name : {"title", "url"})
      if (Words(vocabulary_, name, item.scope).DemandOn("="))
        if (const XmlNode child = ChildOf(item.node, name)) return child.Text();
    return item.keepsText ? item.node.Text() : XmlText();
  }

  void AuditRepeated(const Words& words, const std::string& name) {
    if (open_.empty() || !words.AreKnown() || words.First().isItem) return;
    if (!vocabulary_.takesOne && !words.DemandOn("=")) return;
    auto& single = open_.back().single;
    if (std::find(single.begin(), single.end(), words.First().element) == single.end())
      single.push_back(words.First().element);
    else
      Complain('\'' + name + "' is repeated, and only one of them is kept");
  }

  void AuditKept(const XmlNode& node, const std::string& name, const Words& words,
                 std::string_view around) {
    const Report complain{
        [this](const std::string& what, const XmlNode& inside) { Complain(what, inside); }};
    const std::string_view kind = open_.back().isItem ? open_.back().scope : around;
    xml::ForEachAttribute(node, [&](WideView wideName, const WChar* value) {
      const std::string attribute = ToUtf8(wideName.data);
      if (IsNamespace(attribute) || !*value) return;
      const auto demand = words.DemandOn(attribute);
      sawBreaker_ = sawBreaker_ || Breaks(WideView(value));
      if (demand && *demand != "!") return CheckValue(*demand, name, attribute, value, complain);
      Complain("the attribute '" + Printable(attribute) + "' of '" + Printable(name) +
               "' is not kept" + (demand ? " for a " + std::string(kind) : ""));
    });
    const auto demand = words.DemandOn("=");
    if (demand && !demand->empty()) CheckValue(*demand, name, "", node.Text().c_str(), complain);
    if (vocabulary_.inspect) vocabulary_.inspect(node, words.First().element, around, complain);
  }

  const Vocabulary& vocabulary_;
  Findings& findings_;
  std::vector<Open> open_;
  bool sawBreaker_ = false;
};

}  // namespace

bool Audit(const XmlNode& root, const Vocabulary& vocabulary, Findings& findings) {
  Auditor auditor(vocabulary, findings);
  auditor.ParseXMLTree(root);
  return auditor.sawBreaker();
}

std::optional<std::string> AttributeOf(const XmlNode& element, std::string_view name) {
  std::optional<std::string> found;
  if (!element) return found;
  xml::ForEachAttribute(element, [&](WideView wideName, const WChar* value) {
    if (xml::IsNamed(wideName, name)) found = ToUtf8(value);
  });
  return found;
}

XmlNode ChildOf(const XmlNode& element, std::string_view name) {
  XmlNode found;
  ForEachChild(element, name, [&](const XmlNode& child) {
    if (!found) found = child;
  });
  return found;
}

void ForEachChild(const XmlNode& element, std::string_view name,
                  const std::function<void(const XmlNode& child)>& visit) {
  for (XmlNode child = element.FirstChild(); child; child = child.NextSibling())
    if (child.Type() == kXmlElement && xml::IsNamed(child.Name().view(), name)) visit(child);
}

}  // namespace vosmere::tool
