// The writer of collections as RSS documents.
#pragma once

#include <string_view>

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/write_items.h"

namespace vosmere {

class PubDateFormat;

/// Writes a collection with its local tree as an RSS 2.0 document: one channel, in it the folders,
/// then all items, each with the folder that it stands in. Children of other kinds are left out.
/// Trees of any depth are written. CReadBkmarkXML (rss_reader.h) reads it back.
///
/// Writing changes the tree, once and before the first byte: every child gets its position from 1
/// on as its order, and each folder, each item and the collection get an identity if they have
/// none.
///
/// An item that was checked in and then deleted is left out. An item without an author is written
/// with the collection's owner as its author.
///
/// Intended: the address of a note that begins with "z" is written with slashes for backslashes: it
/// is a path in the browser's own store, and paths in documents have slashes. It is not turned
/// back.
///
/// Intended: the zones of publication dates have the sign that is explained at
/// CBaseTool::GetPubDate. A date that the platform's calendar cannot convert is written as its zone
/// alone.
class VOSMERE_API CWriteColctRSS : public CWriteItems {
 public:
  CWriteColctRSS() = default;
  ~CWriteColctRSS() override;

  /// The collection to write, which must outlive the writing with its local tree; whether it is
  /// ordered and synchronised is looked at now. Without one, and without a root, the document is
  /// empty. Null takes both back.
  void SetColctNode(CColctNode* colct);
  /// Writes what is below this link in the place of the collection's local tree, or a channel of
  /// its own when no collection was set. Null: a channel without items.
  void SetFolderRNode(RNode* root) { localRoot_ = root; }

  /// Leaves out the items that were checked in since they have a base build. False to begin with.
  void SetOnlyWriteUnchecked(bool only) { onlyUnchecked_ = only; }

 protected:
  bool FillData() override;

 private:
  void Prepare();
  void LoseOfTree();
  void LoseOfColct(const CColctNode& colct);
  void LoseOfFolder(const RNode& link);
  void LoseOfItem(const CUrlNode& item);
  void PutChannel();
  void PutGenerator();
  void PutFolders();
  void BeginFolder(CFolderNode& folder);
  void PutOrder(const CBaseNode& item);
  void PutItems();
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
