// Reads a well-formed OPML or RSS document of another program.
#pragma once

#include "vosmere/base/owned_pointer.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/tree_tool.h"
#include "vosmere/xml/read_xml.h"

namespace vosmere::importing {

/// Reads a tree with pages, or a collection with what other programs write, and notices whether
/// there is something that a repair would change or mention.
class FieldReader : public CReadXML {
 public:
  FieldReader() = default;
  ~FieldReader() override;

  /// Whether a repair would change or mention something. What was read is then not complete.
  bool IsOdd() const { return isOdd_; }
  /// What was read, which the caller then owns; null for none.
  RNode* DetachTree();
  CColctNode* DetachColct();

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  void ReadTree(const XmlNode& root);
  void ReadColct(const XmlNode& root);

  RNode* tree_ = nullptr;
  CColctNode* colct_ = nullptr;
  bool isOdd_ = false;
};

}  // namespace vosmere::importing
