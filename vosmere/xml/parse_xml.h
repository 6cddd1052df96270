// The base of the walkers over loaded documents.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere {

/// Base of every walker over a loaded document: calls hooks for each node, depth-first, in document
/// order. A parser is made for one walk on one thread.
///
/// A hook receives a handle of its own and may throw: the load that runs the walk then fails.
class VOSMERE_API CParseXML {
 public:
  CParseXML() = default;
  CParseXML(const CParseXML&) = delete;
  CParseXML& operator=(const CParseXML&) = delete;

  /// Hands over what was built, which is then the caller's; null when there is nothing.
  virtual void* DetachData();
  /// Walks the tree below and including `node`.
  virtual void ParseXMLTree(XmlNode node) = 0;
  virtual ~CParseXML();

 protected:
  /// For every node, before and after its children.
  virtual void OnEnterNode(XmlNode node);
  virtual void OnLeaveNode(XmlNode node);
  /// The walk itself, which calls itself for each child. Attributes are not children.
  virtual void GoThroughChildNodes(XmlNode node);
  /// For element nodes only, between OnEnterNode and the children.
  virtual void ProcessElementNode(XmlNode node) = 0;

  /// Level of the node that is being visited: 1 for the node the walk began with, 0 when idle.
  LONG depth() const { return depth_; }

 private:
  LONG depth_ = 0;
};

}  // namespace vosmere
