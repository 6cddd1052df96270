// The writer of OPML documents.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/collections/library_place.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/write_items.h"

namespace vosmere {

/// Writes a tree of folders and collections as an OPML 2.0 document. Children of other kinds are
/// left out. Trees of any depth are written.
///
/// Intended: an address is written with every backslash turned into a slash.
///
/// Intended: names, descriptions and addresses stand in the markup unescaped; one that holds a
/// double quote, an ampersand or a less-than sign gives a document that no parser accepts. Only the
/// title, owners and identities are escaped. Readers of these files never unescape them.
class VOSMERE_API CWriteColctTreeOPML : public CWriteItems {
 public:
  /// Intended: a name of this many units is cut to one less; documents and their readers have
  /// always agreed on 199.
  static constexpr int kNameLimit = 200;

  CWriteColctTreeOPML() = default;
  ~CWriteColctTreeOPML() override;

  /// The tree to write, which must outlive the writing: the root gives the title, its children the
  /// outlines. Without one the document is empty.
  void SetTreeRoot(RNode* root) { root_ = root; }

  /// Makes collections' addresses relative: one that continues behind the base path with `library`
  /// is written from there. Both are copied; null for either turns this off.
  /// Intended: only the length of the base path counts, its characters are never compared, so that
  /// a library that was moved keeps its relative addresses.
  void SetBasePathAndLibrary(const WChar* basePath, const WChar* library);

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  /// The children of `folder` and everything below them.
  void FillFolderStructure(RNode* folder);
  void FillColctNodeToBuffer(CColctNode* colct);
  void FillNodeStat(CNodeStat* stat);
  void FillNodeUUID(CBaseNode* node);
  void FillNetData(CColctNetData* data);
  /// Where the written part of an address, a system string, begins.
  int GetRelativeStartPos(const WChar* path);
  /// The synchronisation element of an item with that identity; nothing for an empty one.
  void FillSync(WideView uuid, int version);

 private:
  void LoseOf(const RNode* link);
  void LoseOfColct(unsigned held, const CColctNode& colct);
  void BeginFolder(CFolderNode* folder);
  void EndOutline();
  void PutNameAndDescription(CBaseNode* node);
  void PutPath(const WChar* path);

  RNode* root_ = nullptr;
  LONG opmlVersion_ = 1;
  LibraryPlace library_;
};

}  // namespace vosmere
