// Writing trees as files of links for other programs, bookmark files above all.
#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/fwd.h"
#include "vosmere/xml/write_items.h"

namespace vosmere {

/// Base of the writers of links. Does not own the tree, which must outlive the writer; the name of
/// its root is the title. Characters that markup cannot contain become U+FFFD.
class VOSMERE_API CWriteLinks : public CWriteItems {
 public:
  explicit CWriteLinks(RNode* root) : root_(root) {}
  ~CWriteLinks() override;

 protected:
  /// Appends an escaped text; for null nothing.
  void PutValue(const WChar* text);
  void Indent(std::size_t level);

  RNode* root_;
};

/// Writes the bookmark file ("NETSCAPE-Bookmark-file-1") that browsers import: folders, pages and
/// feeds in their order, with addresses, descriptions, tags, and the times that are known.
/// ImportDocument reads it back. Items of other kinds are left out.
class VOSMERE_API CWriteBookmarks : public CWriteLinks {
 public:
  using CWriteLinks::CWriteLinks;
  ~CWriteBookmarks() override;

 protected:
  bool FillData() override;

 private:
  void BeginFile();
  bool LoseOf(const RNode* link);
  void BeginFolder(const CBaseNode& folder);
  void PutPage(const CUrlNode& page, bool isFeed);
  void PutTimes(const CNodeStat& stat);
  void PutTags(const CUrlNode& page);
  void PutDescription(const CBaseNode& item);
};

}  // namespace vosmere
