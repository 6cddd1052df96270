// The reader of collections in RSS documents.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/read_xml.h"

namespace vosmere {

/// Reads a collection with its local tree from an RSS 2.0 document: what CWriteColctRSS writes, and
/// of other programs' documents what has the same names. The root element is "rss"; any other
/// loads, and gives no collection.
///
/// Folders nest as their elements do. An item goes into the folder whose identity its reference
/// names, wherever in the document that folder stands; into the root of the local tree when there
/// is none. Within a folder, what has a stored position comes first, by position, and the rest
/// follows in the order of the document. Elements out of place are ignored, and of repeated ones,
/// which items and folders are not, the first counts.
///
/// What does not come back from a document that CWriteColctRSS wrote:
/// - what is not in it: the statistics of folders and of the collection, the collection's address,
///   file extensions, items that were left out, children that are neither folders nor web pages,
///   the checked-in state of folders, and of what has no base build and is not deleted;
/// - whether an item had the collection's owner as its author or none;
/// - that a plain address was null, which becomes "about:blank", and the backslashes of some notes'
///   addresses;
/// - the versions of folders in a collection that is not synchronised, which become 1;
/// - without stored positions, where folders stood among items;
/// - which of several folders with one identity an item was in: it goes into the first;
/// - tags that hold a separator, or differ from another one in letter case alone.
class VOSMERE_API CReadBkmarkXML : public CReadXML {
 public:
  CReadBkmarkXML() = default;
  /// Frees the collection with its local tree unless it was detached.
  ~CReadBkmarkXML() override;

  /// The collection, which is then the caller's together with its local tree (DeleteWithLocalTree
  /// frees both); null when there is none. A collection stays until it is detached or the next one
  /// is read; a load that fails leaves it.
  CColctNode* DetachColctNode();

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  CColctNode* colct_ = nullptr;
};

}  // namespace vosmere
