// Groups of web pages that have the same address.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/list.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// An address and the web pages that have it: to find duplicates, and to change the address of all
/// of them at once. Owns the address and the cells of the list, but not the pages. Not thread-safe.
class VOSMERE_API CUrlMapItem {
 public:
  /// A list of pages. Every datum is a CUrlNode.
  using PageList = TList<CBaseNode*>;

  /// An entry with one page. The address is copied; it is null for a text of 2085 code units or
  /// more. Null when memory runs out. The caller frees the entry with Delete.
  static CUrlMapItem* New(const WChar* url, CUrlNode* page);
  /// Null is ignored.
  static void Delete(CUrlMapItem* item);

  CUrlMapItem(const CUrlMapItem&) = delete;
  CUrlMapItem& operator=(const CUrlMapItem&) = delete;
  virtual ~CUrlMapItem();

  /// May be null.
  WChar* GetUrl() const { return url_.get(); }
  /// The list, still owned by the entry; null when there are no pages.
  PageList* GetUrlListHead() const { return pages_; }
  /// Takes ownership of the cells of another list. The old cells are not freed: this serves to put
  /// a list back after sorting it.
  void ResetHead(PageList* pages);

  /// Appends a page, which is not owned. Returns false when memory runs out.
  bool AddUrlNode(CUrlNode* page);
  /// Removes a page from the list, without changing or freeing it, and returns the number of pages
  /// left. A page that is not in the list is ignored. Removing many pages one by one takes linear
  /// time in all.
  int DeleteUrlNode(CUrlNode* page);

  /// Whether at least two pages have the address.
  bool HasDuplication() const { return pages_ && pages_->next; }
  /// The number of pages; takes linear time.
  int GetNumberUrlNodes() const;

  /// Gives the entry and all its pages a new address, which may be the text of one of them. Null
  /// and a text of 2085 code units or more change nothing. When memory runs out, pages may keep the
  /// old address, and LostTexts counts it.
  void ModifyURL(const WChar* url);

 protected:
  CUrlMapItem() = default;

 private:
  class PageIndex;
  PageIndex* FreshIndex();

  HeapText url_;
  PageList* pages_ = nullptr;
  PageIndex* index_ = nullptr;  // made by the first removal from a long list; may be null
};

}  // namespace vosmere
