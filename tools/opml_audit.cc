#include "tools/opml_audit.h"

#include <algorithm>
#include <string_view>

#include "tools/text.h"
#include "vosmere/xml/parse_xml.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::tool {
namespace {

// Where an element stands, as bits.
enum Site : unsigned { kDocument = 1, kFolder = 2, kColct = 4, kItem = 6, kAnywhere = 7 };

enum class Form { kText, kNumber, kBoolean };

/// An attribute that the tree holds, or whose loss shows when a saved tree is compared.
struct Attribute {
  std::string_view element;
  std::string_view name;
  unsigned sites;
  Form form = Form::kText;
};

constexpr Attribute kAttributes[] = {
    {"opml", "version", kAnywhere},
    {"vsm:opml", "version", kDocument, Form::kNumber},
    {"outline", "text", kItem},
    {"outline", "title", kItem},
    {"outline", "description", kItem},
    {"outline", "type", kColct},
    {"outline", "xmlUrl", kColct},
    {"outline", "htmlUrl", kColct},
    {"sx:sync", "id", kAnywhere},
    {"sx:sync", "version", kAnywhere, Form::kNumber},
    {"sx:sync", "deleted", kAnywhere, Form::kBoolean},
    {"vsm:stat", "added", kColct, Form::kNumber},
    {"vsm:stat", "modified", kColct, Form::kNumber},
    {"vsm:stat", "lastVisited", kColct, Form::kNumber},
    {"vsm:stat", "flag", kItem, Form::kNumber},
    {"vsm:stat", "unread", kItem, Form::kBoolean},
    {"vsm:view", "expand", kColct, Form::kBoolean},
};

struct Element {
  std::string_view name;
  unsigned sites;
  bool keepsText = false;
};

constexpr Element kElements[] = {
    {"opml", kAnywhere},    {"head", kAnywhere},     {"title", kDocument, true},
    {"body", kAnywhere},    {"outline", kAnywhere},  {"vsm:opml", kDocument},
    {"sx:sync", kAnywhere}, {"vsm:stat", kAnywhere}, {"vsm:view", kAnywhere},
};

const Attribute* FindAttribute(const std::string& element, const std::string& name) {
  for (const Attribute& row : kAttributes)
    if (row.element == element && row.name == name) return &row;
  return nullptr;
}

bool IsNamespace(const std::string& name) {
  return name == "xmlns" || name.starts_with("xmlns:");
}

bool IsBlank(WideView text) {
  return std::all_of(text.begin(), text.end(), [](WChar unit) {
    return unit == ' ' || unit == '\t' || unit == '\r' || unit == '\n';
  });
}

class Audit : public CParseXML {
 public:
  explicit Audit(Findings& findings) : findings_(findings) {}

  void ParseXMLTree(XmlNode node) override { GoThroughChildNodes(node); }

 protected:
  void OnEnterNode(XmlNode node) override {
    switch (node.Type()) {
      case kXmlComment: Report("comments are not kept"); break;
      case kXmlProcessingInstruction: Report("processing instructions are not kept"); break;
      case kXmlText:
      case kXmlCData:
        if (!keepsText_.empty() && !keepsText_.back() && !IsBlank(node.Text().view()))
          Report("text between elements is not kept");
        break;
      default: break;
    }
  }

  void ProcessElementNode(XmlNode node) override {
    const std::string name = ToUtf8(node.Name().c_str());
    if (name == "outline") EnterOutline(node);
    const auto* const element =
        std::find_if(std::begin(kElements), std::end(kElements),
                     [&](const Element& row) { return row.name == name && row.sites & Here(); });
    const bool known = element != std::end(kElements);
    // What is inside an element that is dropped goes with it, without being named again.
    keepsText_.push_back(!known || element->keepsText);
    if (known)
      AuditAttributes(node, name);
    else
      ReportDropped(name);
    if (name == "outline") AuditOutline(node);
  }

  void OnLeaveNode(XmlNode node) override {
    if (node.Type() != kXmlElement) return;
    keepsText_.pop_back();
    if (!IsNamed(node.Name().view(), "outline")) return;
    sites_.pop_back();
    labels_.pop_back();
  }

 private:
  Site Here() const { return sites_.empty() ? kDocument : sites_.back(); }
  void Report(const std::string& what) { findings_.Add(what, Place(labels_)); }

  void ReportDropped(const std::string& name) {
    if (name == "vsm:owner")
      Report("the owner (vsm:owner) is not read");
    else if (name == "vsm:error")
      Report("an earlier save dropped an identity that was too long (vsm:error)");
    else
      Report("the element '" + Printable(name) + "' is not kept");
  }

  // A collection by its type, or by its address when it has no type.
  void EnterOutline(const XmlNode& node) {
    bool hasType = false, isRss = false, hasUrl = false;
    std::string label = Label(nullptr);
    ForEachAttribute(node, [&](WideView name, const WChar* value) {
      if (IsNamed(name, "type")) {
        hasType = true;
        isRss = IsNamed(WideView(value), "rss");
      }
      if (IsNamed(name, "xmlUrl")) hasUrl = true;
      if (*value && (IsNamed(name, "text") || IsNamed(name, "title"))) label = Label(value);
    });
    if (Here() == kColct) Report("outlines inside a collection move out of it");
    sites_.push_back((hasType ? isRss : hasUrl) ? kColct : kFolder);
    labels_.push_back(label);
  }

  void AuditAttributes(const XmlNode& node, const std::string& element) {
    ForEachAttribute(node, [&](WideView wideName, const WChar* value) {
      const std::string name = ToUtf8(wideName.data);
      if (IsNamespace(name) || !*value) return;
      const Attribute* const kept = FindAttribute(element, name);
      if (kept && kept->sites & Here())
        AuditValue(*kept, value);
      else
        Report("the attribute '" + Printable(name) + "' of '" + Printable(element) +
               (kept && Here() == kFolder ? "' is not kept for a folder" : "' is not kept"));
    });
  }

  void AuditValue(const Attribute& attribute, const WChar* value) {
    const std::string name = std::string(attribute.element) + ' ' + std::string(attribute.name);
    const std::string text = ToUtf8(value);
    if (attribute.form == Form::kNumber && text != std::to_string(NumberFromText(value)))
      Report("a number is read otherwise than it is written (" + name + ')');
    if (attribute.form == Form::kBoolean && text != "true" && text != "false")
      Report("neither 'true' nor 'false' (" + name + ')');
    if (name == "sx:sync id" && WideLength(value) > CBaseNode::kMaxUuidLength)
      Report("an identity longer than 36 characters is cut");
    if (name == "vsm:opml version" && text != "1")
      Report("the version of the extensions comes back as 1");
  }

  void AuditOutline(const XmlNode& node) {
    std::string text, title, url;
    ForEachAttribute(node, [&](WideView name, const WChar* value) {
      if (IsNamed(name, "text")) text = ToUtf8(value);
      if (IsNamed(name, "title")) title = ToUtf8(value);
      if (!IsNamed(name, "xmlUrl") || Here() != kColct) return;
      url = ToUtf8(value);
      if (WideLength(value) >= CUrlNode::kTextLimit) Report("xmlUrl is too long to be read");
    });
    if (!text.empty() && !title.empty() && text != title)
      Report("'text' and 'title' differ, and only the later is kept");
    if (url.find('\\') != std::string::npos) Report("a backslash in xmlUrl comes back as a slash");
    if (Here() == kColct && url.empty())
      Report("a collection without xmlUrl comes back with the address about:blank");
  }

  Findings& findings_;
  std::vector<bool> keepsText_;      // of the open elements
  std::vector<Site> sites_;          // of the open outlines
  std::vector<std::string> labels_;  // and their names
};

class AuditReader : public CReadXML {
 public:
  explicit AuditReader(Findings& findings) : findings_(findings) {}

 protected:
  void InvokeParser(XmlNode root) override { Audit(findings_).ParseXMLTree(root); }

 private:
  Findings& findings_;
};

}  // namespace

DocumentError AuditOpml(const WChar* path, Findings& findings) {
  AuditReader reader(findings);
  reader.LoadFile(path);
  return reader.LastError();
}

}  // namespace vosmere::tool
