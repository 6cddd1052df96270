// Writing a collection as an RSS document.
#pragma once

#include <string_view>

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/write_items.h"

namespace vosmere {

class PubDateFormat;

/// Writes a collection with its local tree as an RSS 2.0 document: one channel with the folders,
/// then all items, each with a reference to its folder. Children of other kinds are left out. Trees
/// of any depth are written. CReadBkmarkXML (rss_reader.h) reads the document back.
///
/// Writing changes the tree, when the document is generated: the order of every child is set to its
/// position, counted from 1, and folders, items and the collection get an identity if they have
/// none.
///
/// An item that was checked in and then deleted is left out. An item without an author is written
/// with the collection's owner as its author.
///
/// Intended: in the address of a note that begins with "z" backslashes are written as slashes: it
/// is a path in the browser's own store, and paths in documents have slashes. Reading does not
/// change them back.
///
/// Intended: the zones of publication dates have the sign that CBaseTool::GetPubDate explains. If
/// the platform's calendar cannot convert a date, only the zone is written.
class VOSMERE_API CWriteColctRSS : public CWriteItems {
 public:
  CWriteColctRSS() = default;
  ~CWriteColctRSS() override;

  /// Sets the collection to write, and its local tree as the root. Not owned; both must stay valid
  /// until the document has been written. Whether the collection is ordered and synchronised is
  /// read in this call. Null removes the collection and the root. With neither a collection nor a
  /// root the document is empty.
  void SetColctNode(CColctNode* colct);
  /// Writes what is below this link instead of the collection's local tree, or a channel without
  /// properties when no collection was set. Null: no folders and items are written.
  void SetFolderRNode(RNode* root) { localRoot_ = root; }

  /// Whether to leave out items that are checked in and have a base build. False by default.
  void SetOnlyWriteUnchecked(bool only) { onlyUnchecked_ = only; }

 protected:
  bool FillData() override;

 private:
  void LoseOfTree();
  void LoseOfColct(const CColctNode& colct);
  void LoseOfFolder(const RNode& link);
  void LoseOfItem(const CUrlNode& item);
  void PutChannel();
  void PutGenerator();
  void PutTree();
  void BeginFolder(CFolderNode& folder);
  void PutOrder(const CBaseNode& item);
  bool IsLeftOut(const CUrlNode& item) const;
  void PutItem(CUrlNode& item, RNode* parent, const PubDateFormat& dates);
  void PutLink(const CUrlNode& item);
  void PutAuthor(const CUrlNode& item);
  void PutFolderReference(const CUrlNode& item, RNode* parent);
  void PutRelation(const CUrlNode& item);
  void PutPubDate(const CNodeStat& stat, const PubDateFormat& dates);
  bool PutItemSync(const CUrlNode& item);
  void PutTags(const CUrlNode& item);

  RNode* localRoot_ = nullptr;
  bool ordered_ = false;
  bool synced_ = false;
  CColctNode* colct_ = nullptr;
  bool onlyUnchecked_ = false;
};

}  // namespace vosmere
