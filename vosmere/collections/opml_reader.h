// The reader of OPML documents.
#pragma once

#include <vector>

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/parse_xml.h"
#include "vosmere/xml/read_xml.h"

namespace vosmere {

/// Walks an OPML document and builds a tree of folders and collections. Elements out of place and
/// unknown names are ignored.
class VOSMERE_API CParseOPML : public CParseXML {
 public:
  CParseOPML() = default;
  /// Frees the tree unless it was detached.
  ~CParseOPML() override;

  /// The root link (an RNode) of the tree, which is then the caller's (DeleteTree frees it); null
  /// when there is none.
  void* DetachData() override;
  /// `node` is the "opml" element.
  void ParseXMLTree(XmlNode node) override;

  /// The version of the document's own extensions; 0 when it names none.
  LONG GetOpmlVersion() const { return opmlVersion_; }
  /// Who is told of what is left out; null for nobody. To be called before the walk.
  void SetReport(xml::Report* report) { report_ = report; }

 protected:
  void ProcessElementNode(XmlNode node) override;
  void OnEnterNode(XmlNode node) override;
  void OnLeaveNode(XmlNode node) override;

  void ProcessOutline(XmlNode node);
  /// An outline is a collection when its type is "rss" or, without a type, when it has an xmlUrl.
  bool IsRssFeed(const XmlNode& node);
  void ProcessFolder(const XmlNode& node);
  void ProcessRssFeed(const XmlNode& node);
  void ProcessSyncAttributes(XmlNode node);
  void ProcessNodeStat(XmlNode node);
  void ProcessVSMOpml(XmlNode node);
  void ProcessNodeView(XmlNode node);
  void SetFolderAttributes(CFolderNode* folder, WideView name, const WChar* value);
  void SetColctAttributes(CColctNode* colct, WideView name, const WChar* value);

 private:
  void ProcessOpml();
  void ProcessTitle(const XmlNode& node);

  void LeaveElement(const XmlText& name);
  bool AtRoot() const;
  // What extension elements describe; null where they say nothing.
  CBaseNode* Described() const;
  CNodeStat* DescribedStat() const;
  CColctNetData* DescribedView() const;

  RNode* currentFolder_ = nullptr;
  RNode* treeRoot_ = nullptr;
  std::vector<RNode*> outlines_;  // the links of the open outlines, innermost last
  XmlNode title_;                 // the last one that names the tree
  LONG opmlVersion_ = 0;
  xml::Report* report_ = nullptr;
};

/// Reads a tree of folders and collections from an OPML document.
///
/// Intended: a collection's address comes back with every slash turned into a backslash, those of
/// "http://" too, as CWriteColctTreeOPML turns every backslash into a slash. Addresses in the tree
/// are paths of collection files with the separators of Windows.
///
/// What does not come back from a document that CWriteColctTreeOPML wrote: owners, and the marks of
/// deleted items. A root element other than "opml" loads, and gives no tree.
class VOSMERE_API CReadColctTreeOPML : public CReadXML {
 public:
  CReadColctTreeOPML() = default;
  /// Frees the tree unless it was detached.
  ~CReadColctTreeOPML() override;

  /// The root link of the tree, which is then the caller's (DeleteTree frees it); null when there
  /// is none. A tree stays until it is detached or the next one is read.
  RNode* DetachTreeRoot();
  /// The version of the document's own extensions; 0 when it names none.
  LONG GetOpmlVersion() const { return opmlVersion_; }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  RNode* treeRoot_ = nullptr;
  LONG opmlVersion_ = 0;
};

}  // namespace vosmere
