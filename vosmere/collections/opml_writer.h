// Writing a tree of folders and collections as an OPML document.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/collections/library_place.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/write_items.h"

namespace vosmere {

/// Writes a tree of folders and collections as an OPML 2.0 document. Children of other kinds are
/// left out, but see SetWritePages. Trees of any depth are written.
///
/// Intended: in addresses every backslash is written as a slash.
///
/// Intended: names, descriptions and addresses are not escaped. One that contains a double quote,
/// an ampersand or a less-than sign makes a document that parsers reject. Only the title, owners
/// and identities are escaped. Readers of these files never unescape the others.
class VOSMERE_API CWriteColctTreeOPML : public CWriteItems {
 public:
  /// Intended: a name of this many or more code units is cut to 199; existing documents and their
  /// readers use that limit.
  static constexpr int kNameLimit = 200;

  CWriteColctTreeOPML() = default;
  ~CWriteColctTreeOPML() override;

  /// Sets the tree to write. Not owned; it must stay valid until the document has been written. The
  /// name of the root becomes the title, its children the outlines. Without a root the document is
  /// empty.
  void SetTreeRoot(RNode* root) { root_ = root; }

  /// Whether to write pages as well, as outlines of type "link", which other programs and
  /// ImportDocument read. CReadColctTreeOPML reads them as folders. Off by default.
  void SetWritePages(bool writePages) { writesPages_ = writePages; }

  /// Makes the addresses of collections relative: if `library` occurs in an address directly after
  /// the length of the base path (case-sensitive) and more text follows, the address is written
  /// from there on. Both arguments are copied; null for either turns this off.
  /// Intended: only the length of the base path matters, its characters are never compared, so that
  /// a library that was moved keeps its relative addresses.
  void SetBasePathAndLibrary(const WChar* basePath, const WChar* library);

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  /// The children of `folder` and everything below them.
  void FillFolderStructure(RNode* folder);
  void FillColctNodeToBuffer(CColctNode* colct);
  void FillPage(CUrlNode* page);
  void FillNodeStat(CNodeStat* stat);
  void FillNodeUUID(CBaseNode* node);
  void FillNetData(CColctNetData* data);
  /// The index at which the written part of an address begins. `path` is a system string.
  int GetRelativeStartPos(const WChar* path);
  /// Writes the synchronisation element of an item; nothing if the identity is empty.
  void FillSync(WideView uuid, int version);

 private:
  void LoseOf(const RNode* link);
  void LoseOfColct(unsigned held, const CColctNode& colct);
  void BeginFolder(CFolderNode* folder);
  void EndOutline();
  void PutNameAndDescription(CBaseNode* node);
  void PutPath(const WChar* path);

  RNode* root_ = nullptr;
  bool writesPages_ = false;
  LONG opmlVersion_ = 1;
  LibraryPlace library_;
};

}  // namespace vosmere
