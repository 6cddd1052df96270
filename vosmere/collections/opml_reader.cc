// Reads a tree of folders and collections from an OPML document.
#include "vosmere/collections/opml_reader.h"

#include <algorithm>
#include <string>
#include <utility>

#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/internal/new_link.h"
#include "vosmere/xml/internal/item_fields.h"
#include "vosmere/xml/reader_scopes.h"

namespace vosmere {
namespace {

using namespace xml;

// Intended: every slash becomes a backslash, also in web addresses; the header says why.
void SetPath(CColctNode& colct, const WChar* value) {
  const WideView view(value);
  if (view.size >= CUrlNode::kTextLimit) return colct.SetUrl(value);  // which rejects the text
  WChar path[CUrlNode::kTextLimit];
  std::replace_copy(value, value + view.size + 1, path, WChar{'/'}, WChar{'\\'});
  colct.SetUrl(path);
}

constexpr Field<CFolderNode> kFolderFields[] = {
    {"text", Text<&CFolderNode::SetName>},
    {"title", Text<&CFolderNode::SetName>},
    {"description", Text<&CFolderNode::SetDescription>},
};

constexpr Field<CColctNode> kColctFields[] = {
    {"type", Implied},
    {"text", Text<&CColctNode::SetName>},
    {"title", Text<&CColctNode::SetName>},
    {"description", Text<&CColctNode::SetDescription>},
    {"xmlUrl", SetPath},
    {"htmlUrl", Text<&CColctNode::SetRelationUrl>},
    {"lastBuildDate", Ignored},
    {"language", Ignored},
    {"link", Ignored},
    {"pubDate", Ignored},
};

constexpr Field<CUrlNode> kPageFields[] = {
    {"type", Implied},
    {"text", Text<&CUrlNode::SetName>},
    {"title", Text<&CUrlNode::SetName>},
    {"description", Text<&CUrlNode::SetDescription>},
    {"url", Text<&CUrlNode::SetUrl>},
    {"htmlUrl", Text<&CUrlNode::SetRelationUrl>},
};

constexpr Field<CColctNetData> kViewFields[] = {
    {"expand", WhenTrue<&CColctNetData::SetColctExpandState>},
};

// Reports what is lost of an outline although all its attributes are known.
void SayOutline(const XmlNode& outline, tagNODETYPE type, Report& report) {
  std::basic_string<WChar> text, title, url;
  ForEachAttribute(outline, [&](WideView name, const WChar* value) {
    if (IsNamed(name, "text")) text = value;
    if (IsNamed(name, "title")) title = value;
    if (IsNamed(name, "xmlUrl")) url = value;
  });
  if (!text.empty() && !title.empty() && text != title)
    report.Lose(LossKind::kRepeated, "'text' and 'title' differ, and only the later one is kept");
  if (type != NT_COLCT) return;
  if (url.find(WChar{'\\'}) != url.npos)
    report.Lose(LossKind::kChanged, "a backslash in xmlUrl becomes a slash");
  if (url.empty())
    report.Lose(LossKind::kUnsaid, "a collection without xmlUrl gets the address about:blank");
}

}  // namespace

CParseOPML::~CParseOPML() {
  DeleteTree(treeRoot_);
}

void* CParseOPML::DetachData() {
  currentFolder_ = nullptr;
  outlines_.clear();
  return std::exchange(treeRoot_, nullptr);
}

void CParseOPML::ParseXMLTree(XmlNode node) {
  GoThroughChildNodes(std::move(node));
  // The last title wins. Its text is collected only now, once: collecting that of every title would
  // take quadratic time for nested titles.
  if (title_ && treeRoot_) treeRoot_->item->SetName(title_.Text().c_str());
  title_ = XmlNode();
}

// Elements are recognised at any place in the document. Each handler decides whether there is an
// object that the element can apply to.
void CParseOPML::ProcessElementNode(XmlNode node) {
  constexpr void (*kTitle)(CParseOPML&, const Element&) = Call<&CParseOPML::ProcessTitle>;
  static constexpr ScopedElement<CParseOPML> kElements[] = {
      {kAnywhere, "outline", Call<&CParseOPML::ProcessOutline>},  // the most frequent first
      {kAnywhere, "sx:sync", Call<&CParseOPML::ProcessSyncAttributes>},
      {kAnywhere, "vsm:stat", Call<&CParseOPML::ProcessNodeStat>},
      {kAnywhere, "vsm:view", Call<&CParseOPML::ProcessNodeView>},
      {kAnywhere, "head", nullptr},
      {kAnywhere, "body", nullptr},
      {kAnywhere, "opml", Call<&CParseOPML::ProcessOpml>},
      {kAnywhere, "title", kTitle},
      {kAnywhere, "vsm:opml", Call<&CParseOPML::ProcessVSMOpml>},
  };
  const auto* const row = FindRow(kElements, node.Name().view());
  const bool isKnown = row && (row->read != kTitle || AtRoot());
  if (report_) report_->Enter(node, isKnown ? Report::As::kKnown : Report::As::kUnknown);
  if (isKnown && row->read) row->read(*this, Element(node, report_));
  if (report_ && isKnown) report_->EndOfReading();
}

void CParseOPML::OnEnterNode(XmlNode node) {
  if (report_ && node.Type() != kXmlElement && depth() > 1) report_->Meet(node);
}

void CParseOPML::OnLeaveNode(XmlNode node) {
  if (node.Type() == kXmlElement && !outlines_.empty()) LeaveElement(node.Name());
  if (node.Type() == kXmlElement && report_) report_->Leave();
}

void CParseOPML::LeaveElement(const XmlText& name) {
  if (!IsNamed(name.view(), "outline")) return;
  if (report_ && outlines_.back()->type == NT_COLCT)
    SayTimes(*report_, *outlines_.back()->item->GetNodeStat());
  Trace("LeaveNode=%s Level=%d\n", name.c_str(), depth());
  if (outlines_.back()->type == NT_FOLDER) currentFolder_ = currentFolder_->parent;
  outlines_.pop_back();
  if (outlines_.empty()) Trace("m_pOutLineStack=0\n");
}

// Elements that belong to the document as a whole.

void CParseOPML::ProcessOpml() {
  if (!treeRoot_) currentFolder_ = treeRoot_ = NewLink(CFolderNode::New(), NT_FOLDER, nullptr);
}

// A title and the version of the extensions belong to the document only outside of all outlines.
bool CParseOPML::AtRoot() const {
  return treeRoot_ && outlines_.empty();
}

void CParseOPML::ProcessTitle(const XmlNode& node) {
  title_ = node;
  if (report_) report_->TakesText();
}

void CParseOPML::ProcessVSMOpml(XmlNode node) {
  if (!AtRoot()) return;
  ForEachAttribute(Element(node, report_), [this](WideView name, const WChar* value) {
    Trace("AttributeName=%s\n", name.data);
    Trace("AttributeValue=%s\n", value);
    const LONG version = NumberFromText(value);
    const bool isVersion = IsNamed(name, "version");
    if (isVersion && version >= 0) opmlVersion_ = version;
    if (report_ && !isVersion) report_->Unknown(name, value);
    if (report_ && isVersion && !IsNamed(WideView(value), "1"))
      report_->Lose(LossKind::kChanged, "the version of the extensions becomes 1");
  });
}

// Outlines.

void CParseOPML::ProcessOutline(XmlNode node) {
  if (!treeRoot_) return;
  if (report_ && !outlines_.empty() && outlines_.back()->type == NT_COLCT)
    report_->Lose(LossKind::kChanged, "outlines inside a collection are moved out of it");
  if (IsRssFeed(node))
    ProcessRssFeed(node);
  else if (readsPages_ && IsPage(node))
    ProcessPage(node);
  else
    ProcessFolder(node);
  if (report_) SayOutline(node, outlines_.back()->type, *report_);
}

bool CParseOPML::IsRssFeed(const XmlNode& node) {
  bool hasType = false, isRss = false, hasUrl = false;
  ForEachAttribute(node, [&](WideView name, const XmlAttributes& attribute) {
    if (IsNamed(name, "xmlUrl")) hasUrl = true;
    if (!IsNamed(name, "type")) return;
    Trace("ISFeedATTRValue=%s\n", attribute.Value().c_str());
    hasType = true;
    isRss = IsNamed(attribute.Value().view(), "rss");
  });
  return hasType ? isRss : hasUrl;
}

void CParseOPML::ProcessFolder(const XmlNode& node) {
  CFolderNode* const folder = CFolderNode::New();
  currentFolder_ = NewLink(folder, NT_FOLDER, currentFolder_);
  ForEachAttribute(Element(node, report_), [=, this](WideView name, const WChar* value) {
    SetFolderAttributes(folder, name, value);
  });
  outlines_.push_back(currentFolder_);
}

void CParseOPML::SetFolderAttributes(CFolderNode* folder, WideView name, const WChar* value) {
  if (*value) ApplyField(kFolderFields, *folder, report_, name, value);
}

void CParseOPML::ProcessRssFeed(const XmlNode& node) {
  CColctNode* const colct = CColctNode::New();
  RNode* const link = NewLink(colct, NT_COLCT, currentFolder_);
  ForEachAttribute(Element(node, report_), [=, this](WideView name, const WChar* value) {
    SetColctAttributes(colct, name, value);
  });
  outlines_.push_back(link);
}

void CParseOPML::SetColctAttributes(CColctNode* colct, WideView name, const WChar* value) {
  if (*value)
    ApplyField(kColctFields, *colct, report_, name, value);
  else
    Trace("Zero length Value of %s\n", name.data);
}

bool CParseOPML::IsPage(const XmlNode& node) const {
  bool isLink = false, hasUrl = false;
  ForEachAttribute(node, [&](WideView name, const WChar* value) {
    if (IsNamed(name, "type")) isLink = IsNamed(WideView(value), "link");
    if (IsNamed(name, "url")) hasUrl = *value;
  });
  return isLink && hasUrl;
}

void CParseOPML::ProcessPage(const XmlNode& node) {
  CUrlNode* const page = CUrlNode::New();
  RNode* const link = NewLink(page, NT_URL, currentFolder_);
  ForEachAttribute(Element(node, report_), [=, this](WideView name, const WChar* value) {
    if (*value) ApplyField(kPageFields, *page, report_, name, value);
  });
  outlines_.push_back(link);
}

// Extension elements. They refer to the innermost open outline.

CBaseNode* CParseOPML::Described() const {
  const RNode* const link = outlines_.empty() ? treeRoot_ : outlines_.back();
  return link ? link->item : nullptr;
}

CNodeStat* CParseOPML::DescribedStat() const {
  return outlines_.empty() ? nullptr : Described()->GetNodeStat();
}

CColctNetData* CParseOPML::DescribedView() const {
  if (outlines_.empty() || outlines_.back()->type != NT_COLCT) return nullptr;
  return static_cast<CColctNode*>(Described())->GetColctNetData();
}

void CParseOPML::ProcessSyncAttributes(XmlNode node) {
  AttributesTo<&CParseOPML::Described, kSyncFields>(*this, Element(node, report_));
}

void CParseOPML::ProcessNodeStat(XmlNode node) {
  AttributesTo<&CParseOPML::DescribedStat, kStatFields>(*this, Element(node, report_));
}

void CParseOPML::ProcessNodeView(XmlNode node) {
  AttributesTo<&CParseOPML::DescribedView, kViewFields>(*this, Element(node, report_));
}

// The reader.

CReadColctTreeOPML::~CReadColctTreeOPML() {
  DeleteTree(treeRoot_);
}

RNode* CReadColctTreeOPML::DetachTreeRoot() {
  return std::exchange(treeRoot_, nullptr);
}

void CReadColctTreeOPML::InvokeParser(XmlNode root) {
  CParseOPML parser;
  parser.SetReport(Reported(root).report());
  if (IsRootNamed(root, "opml")) parser.ParseXMLTree(root);
  ThrowIfTextsWereLost();
  DeleteTree(treeRoot_);
  treeRoot_ = static_cast<RNode*>(parser.DetachData());
  opmlVersion_ = parser.GetOpmlVersion();
}

}  // namespace vosmere
