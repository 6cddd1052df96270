// Reading a tree of folders and collections from an OPML document.
#pragma once

#include "vosmere/base/array.h"
#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/parse_xml.h"
#include "vosmere/xml/read_xml.h"

namespace vosmere {

/// Walks a parsed OPML document and builds a tree of folders and collections. Misplaced elements
/// and unknown names are ignored.
class VOSMERE_API CParseOPML : public CParseXML {
 public:
  CParseOPML() = default;
  /// Frees the tree if it was not detached.
  ~CParseOPML() override;

  /// Returns the root link of the tree (an RNode), which the caller then owns and frees with
  /// DeleteTree; null when there is none.
  void* DetachData() override;
  /// `node` is the "opml" element.
  void ParseXMLTree(XmlNode node) override;

  /// The version of this library's extensions that the document states; 0 when it states none.
  LONG GetOpmlVersion() const { return opmlVersion_; }
  /// Whether to read outlines of type "link" with a url as pages, not as folders. Off by default.
  void SetReadPages(bool readPages) { readsPages_ = readPages; }
  /// Sets the report that receives what is left out; null for none. Must be called before the walk.
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
  void ProcessPage(const XmlNode& node);
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
  bool IsPage(const XmlNode& node) const;
  // The object that an extension element refers to; null where the element has no meaning.
  CBaseNode* Described() const;
  CNodeStat* DescribedStat() const;
  CColctNetData* DescribedView() const;

  RNode* currentFolder_ = nullptr;
  RNode* treeRoot_ = nullptr;
  Array<RNode*> outlines_;  // the links of the open outlines, innermost last
  XmlNode title_;           // the last title element at the root
  LONG opmlVersion_ = 0;
  bool readsPages_ = false;
  xml::Report* report_ = nullptr;
};

/// Reads a tree of folders and collections from an OPML document.
///
/// Intended: in the address of a collection every slash becomes a backslash, those of "http://"
/// too, because CWriteColctTreeOPML turns every backslash into a slash. Addresses in the tree are
/// paths of collection files with Windows separators.
///
/// Lost from a document that CWriteColctTreeOPML wrote: owners, and the marks of deleted items. A
/// document with a root element other than "opml" loads without error and yields no tree.
class VOSMERE_API CReadColctTreeOPML : public CReadXML {
 public:
  CReadColctTreeOPML() = default;
  /// Frees the tree if it was not detached.
  ~CReadColctTreeOPML() override;

  /// Returns the root link of the tree, which the caller then owns and frees with DeleteTree; null
  /// when there is none. A tree that is not detached is freed by the next successful load; a failed
  /// load keeps it.
  RNode* DetachTreeRoot();
  /// The version of this library's extensions that the document states; 0 when it states none.
  LONG GetOpmlVersion() const { return opmlVersion_; }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  RNode* treeRoot_ = nullptr;
  LONG opmlVersion_ = 0;
};

}  // namespace vosmere
