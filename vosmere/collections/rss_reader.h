// Reading a collection from an RSS document.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/read_xml.h"

namespace vosmere {

/// Reads a collection with its local tree from an RSS 2.0 document: everything that CWriteColctRSS
/// writes, and from documents of other programs the elements with the same names. A document with a
/// root element other than "rss" loads without error and yields no collection.
///
/// Folders nest as their elements do. An item is put into the folder whose identity its reference
/// names, wherever in the document that folder is; into the root of the local tree if there is no
/// such folder. Within a folder, children with a stored position come first, sorted by position;
/// the others follow in document order. Misplaced elements are ignored. Of repeated elements other
/// than items and folders, the first is used.
///
/// Lost from a document that CWriteColctRSS wrote:
/// - what the document does not contain: the statistics of folders and of the collection, the
///   collection's address, file extensions, items that were left out, children that are neither
///   folders nor web pages, the checked-in state of folders, and that of anything else that has no
///   base build and is not deleted;
/// - whether an item had the collection's owner as its author or no author;
/// - that the address of a plain link was null, which becomes "about:blank", and the backslashes in
///   the addresses of some notes;
/// - the versions of folders in a collection that is not synchronised, which become 1;
/// - without stored positions, the order of folders among items;
/// - which of several folders with the same identity an item was in: it is put into the first;
/// - tags that contain a separator, or differ from another tag only in letter case.
class VOSMERE_API CReadBkmarkXML : public CReadXML {
 public:
  CReadBkmarkXML() = default;
  /// Frees the collection with its local tree if it was not detached.
  ~CReadBkmarkXML() override;

  /// Whether to read what documents of other programs hold beside that, off by default: the address
  /// of the site, items beside the channel, and of an item the publication date as the time of its
  /// modification, up to 256 categories as tags, the creator as author, and a permanent guid as
  /// address where there is no link. Blanks around addresses are left out.
  void SetReadForeign(bool readForeign) { readsForeign_ = readForeign; }
  /// Whether the last document had a date or a category that was not read, with SetReadForeign.
  bool HadUnread() const { return hadUnread_; }

  /// Returns the collection, which the caller then owns together with its local tree and frees with
  /// DeleteWithLocalTree; null when there is none. A collection that is not detached is freed by
  /// the next successful load; a failed load keeps it.
  CColctNode* DetachColctNode();

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  CColctNode* colct_ = nullptr;
  bool readsForeign_ = false;
  bool hadUnread_ = false;
};

}  // namespace vosmere
