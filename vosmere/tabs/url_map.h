#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/list.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// One address and the web pages that carry it, for finding duplicates and for changing the address
/// of all of them at once. The entry owns its address and its list's cells, never the pages.
class VOSMERE_API CUrlMapItem {
 public:
  /// The pages; every datum is a CUrlNode.
  using PageList = TList<CBaseNode*>;

  /// An entry of one page. Its address is a copy, or null for a text of 2085 units or more. Null
  /// when memory runs out.
  static CUrlMapItem* New(const WChar* url, CUrlNode* page);
  /// Null is ignored.
  static void Delete(CUrlMapItem* item);

  CUrlMapItem(const CUrlMapItem&) = delete;
  CUrlMapItem& operator=(const CUrlMapItem&) = delete;
  virtual ~CUrlMapItem();

  /// May be null.
  WChar* GetUrl() const { return url_.get(); }
  /// Still owned by the entry; null when it has no pages.
  PageList* GetUrlListHead() const { return pages_; }
  /// Takes ownership of another list's cells. Those held before are not freed; this is how a sorted
  /// list is handed back.
  void ResetHead(PageList* pages) { pages_ = pages; }

  /// Appends the page; false when memory runs out.
  bool AddUrlNode(CUrlNode* page);
  /// Takes the page out of the list, which is all that happens to it, and returns how many are
  /// left. A page that is not there changes nothing.
  int DeleteUrlNode(CUrlNode* page);

  /// Whether two pages or more carry the address.
  bool HasDuplication() const { return pages_ && pages_->next; }
  int GetNumberUrlNodes() const;

  /// Gives every page and the entry a new address, which may be one of theirs. Null and a text of
  /// 2085 units or more change nothing.
  void ModifyURL(const WChar* url);

 protected:
  CUrlMapItem() = default;

 private:
  HeapText url_;
  PageList* pages_ = nullptr;
};

}  // namespace vosmere
