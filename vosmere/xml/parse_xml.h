// The base class of walkers over a parsed XML document.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere {

/// Base of every walker over a parsed document: calls hooks for each node, depth-first, in document
/// order. An object is used for one walk, on one thread.
///
/// A hook receives its own handle of the node and may throw: the load that runs the walk then
/// fails.
class VOSMERE_API CParseXML {
 public:
  CParseXML() = default;
  CParseXML(const CParseXML&) = delete;
  CParseXML& operator=(const CParseXML&) = delete;

  /// Returns what was built, which the caller then owns; null when there is nothing.
  virtual void* DetachData();
  /// Walks the tree below and including `node`.
  virtual void ParseXMLTree(XmlNode node) = 0;
  virtual ~CParseXML();

 protected:
  /// Called for every node, before and after its children.
  virtual void OnEnterNode(XmlNode node);
  virtual void OnLeaveNode(XmlNode node);
  /// The walk, which is recursive. Attributes are not children.
  virtual void GoThroughChildNodes(XmlNode node);
  /// Called for element nodes only, after OnEnterNode and before the children.
  virtual void ProcessElementNode(XmlNode node) = 0;

  /// The level of the node being visited: 1 for the node that the walk began with, 0 outside a
  /// walk.
  LONG depth() const { return depth_; }

 private:
  LONG depth_ = 0;
};

}  // namespace vosmere
