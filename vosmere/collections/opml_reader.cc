#include "vosmere/collections/opml_reader.h"

#include <algorithm>
#include <utility>

#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/internal/new_link.h"
#include "vosmere/xml/internal/item_fields.h"

namespace vosmere {
namespace {

using namespace xml;

// Intended: every slash, of web addresses too, becomes a backslash; see the header.
void SetPath(CColctNode& colct, const WChar* value) {
  const WideView view(value);
  if (view.size >= CUrlNode::kTextLimit) return;  // too long for an address, which stays as it is
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
    {"type", Ignored},
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

constexpr Field<CColctNetData> kViewFields[] = {
    {"expand", WhenTrue<&CColctNetData::SetColctExpandState>},
};

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
  // The last title is the one that stays. Its text is asked for once: titles within titles would
  // each gather the same text anew.
  if (title_ && treeRoot_) treeRoot_->item->SetName(title_.Text().c_str());
  title_ = XmlNode();
}

struct CParseOPML::Element {
  RowName name;
  void (CParseOPML::*process)(XmlNode);
};

void CParseOPML::ProcessElementNode(XmlNode node) {
  static constexpr Element kElements[] = {
      {"outline", &CParseOPML::ProcessOutline},
      {"opml", &CParseOPML::ProcessOpml},
      {"head", &CParseOPML::Ignore},
      {"title", &CParseOPML::ProcessTitle},
      {"vsm:opml", &CParseOPML::ProcessVSMOpml},
      {"body", &CParseOPML::Ignore},
      {"sx:sync", &CParseOPML::ProcessSyncAttributes},
      {"vsm:stat", &CParseOPML::ProcessNodeStat},
      {"vsm:view", &CParseOPML::ProcessNodeView},
  };
  if (const Element* const element = FindRow(kElements, node.Name().view()))
    (this->*element->process)(std::move(node));
}

void CParseOPML::OnLeaveNode(XmlNode node) {
  if (outlines_.empty() || node.Type() != kXmlElement) return;
  const XmlText name = node.Name();
  if (!IsNamed(name.view(), "outline")) return;
  Trace("LeaveNode=%s Level=%d\n", name.c_str(), depth());
  if (outlines_.back()->type == NT_FOLDER) currentFolder_ = currentFolder_->parent;
  outlines_.pop_back();
  if (outlines_.empty()) Trace("m_pOutLineStack=0\n");
}

// Elements of the document itself.

void CParseOPML::Ignore(XmlNode) {}

void CParseOPML::ProcessOpml(XmlNode) {
  if (!treeRoot_) currentFolder_ = treeRoot_ = NewLink(CFolderNode::New(), NT_FOLDER, nullptr);
}

// A title, and the version of the extensions, are the document's only outside of all outlines.
bool CParseOPML::AtRoot() const {
  return treeRoot_ && outlines_.empty();
}

void CParseOPML::ProcessTitle(XmlNode node) {
  if (AtRoot()) title_ = std::move(node);
}

void CParseOPML::ProcessVSMOpml(XmlNode node) {
  if (!AtRoot()) return;
  ForEachAttribute(node, [this](WideView name, const WChar* value) {
    Trace("AttributeName=%s\n", name.data);
    Trace("AttributeValue=%s\n", value);
    const LONG version = NumberFromText(value);
    if (IsNamed(name, "version") && version >= 0) opmlVersion_ = version;
  });
}

// Outlines.

void CParseOPML::ProcessOutline(XmlNode node) {
  if (!treeRoot_) return;
  if (IsRssFeed(node))
    ProcessRssFeed(node);
  else
    ProcessFolder(node);
}

bool CParseOPML::IsRssFeed(const XmlNode& node) {
  bool hasType = false, isRss = false, hasUrl = false;
  ForEachAttribute(node, [&](WideView name, const WChar* value) {
    if (IsNamed(name, "xmlUrl")) hasUrl = true;
    if (!IsNamed(name, "type")) return;
    Trace("ISFeedATTRValue=%s\n", value);
    hasType = true;
    isRss = IsNamed(WideView(value), "rss");
  });
  return hasType ? isRss : hasUrl;
}

void CParseOPML::ProcessFolder(const XmlNode& node) {
  CFolderNode* const folder = CFolderNode::New();
  currentFolder_ = NewLink(folder, NT_FOLDER, currentFolder_);
  ForEachAttribute(node, [=, this](WideView name, const WChar* value) {
    SetFolderAttributes(folder, name, value);
  });
  outlines_.push_back(currentFolder_);
}

void CParseOPML::SetFolderAttributes(CFolderNode* folder, WideView name, const WChar* value) {
  if (*value) ApplyField(kFolderFields, *folder, name, value);
}

void CParseOPML::ProcessRssFeed(const XmlNode& node) {
  CColctNode* const colct = CColctNode::New();
  RNode* const link = NewLink(colct, NT_COLCT, currentFolder_);
  ForEachAttribute(node, [=, this](WideView name, const WChar* value) {
    SetColctAttributes(colct, name, value);
  });
  outlines_.push_back(link);
}

void CParseOPML::SetColctAttributes(CColctNode* colct, WideView name, const WChar* value) {
  if (*value)
    ApplyField(kColctFields, *colct, name, value);
  else
    Trace("Zero length Value of %s\n", name.data);
}

// Extension elements. They describe the innermost open outline.

void CParseOPML::ProcessSyncAttributes(XmlNode node) {
  if (!treeRoot_) return;
  CBaseNode& item = *(outlines_.empty() ? treeRoot_ : outlines_.back())->item;
  ForEachAttribute(
      node, [&](WideView name, const WChar* value) { ApplyField(kSyncFields, item, name, value); });
}

void CParseOPML::ProcessNodeStat(XmlNode node) {
  if (outlines_.empty()) return;
  CNodeStat& stat = *outlines_.back()->item->GetNodeStat();
  ForEachAttribute(
      node, [&](WideView name, const WChar* value) { ApplyField(kStatFields, stat, name, value); });
}

void CParseOPML::ProcessNodeView(XmlNode node) {
  if (outlines_.empty() || outlines_.back()->type != NT_COLCT) return;
  auto* const colct = static_cast<CColctNode*>(outlines_.back()->item);
  CColctNetData& view = *colct->GetColctNetData();
  ForEachAttribute(
      node, [&](WideView name, const WChar* value) { ApplyField(kViewFields, view, name, value); });
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
  if (IsRootNamed(root, "opml")) parser.ParseXMLTree(root);
  ThrowIfTextsWereLost();
  DeleteTree(treeRoot_);
  treeRoot_ = static_cast<RNode*>(parser.DetachData());
  opmlVersion_ = parser.GetOpmlVersion();
}

}  // namespace vosmere
