// Web pages.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/tree/base_node.h"
#include "vosmere/tree/url_prop.h"

namespace vosmere {

/// The kind of a web page's item.
enum tagVSMITEMTYPE : LONG {
  IT_URL = 0,   ///< an address without more
  IT_NOTE = 1,  ///< a text that the user wrote
  IT_WEBPAGE = 2,
  IT_FILE = 3,
};

/// A web page: an address and, when needed, a property block.
class VOSMERE_API CUrlNode : public CBaseNode {
 public:
  /// A text of this many code units or more is too long for an address, author or related address.
  static constexpr int kTextLimit = 2085;

  /// A new page with the address "about:blank"; null when memory runs out. Freed with Delete.
  static CUrlNode* New();
  /// A copy of everything but the link; the property block is copied, too. Null when memory runs
  /// out.
  static CUrlNode* New(CUrlNode* source);

  ~CUrlNode() override;

  /// Null makes the address null.
  /// Intended: a text that is too long is ignored and the old address stays, whereas author and
  /// related address become null. A page does not lose its address because of a text that is too
  /// long.
  void SetUrl(const WChar* url) { url_.AssignIfShorter(url, kTextLimit); }
  /// Null only after SetUrl with null.
  WChar* GetUrl() const { return url_.get(); }

  /// Null and a text that is too long make the author null.
  void SetAuthor(const WChar* author) { author_.AssignOrClear(author, kTextLimit); }
  /// May be null.
  WChar* GetAuthor() const { return author_.get(); }

  /// An address that is related to the page. Null and a text that is too long make it null.
  void SetRelationUrl(const WChar* url) { relationUrl_.AssignOrClear(url, kTextLimit); }
  /// May be null.
  WChar* GetRelationUrl() const { return relationUrl_.get(); }

  /// Whether the item is a plain address (IT_URL). False for the other types even if they have an
  /// address, and when the address is null.
  bool HasUrl() const { return url_.get() && itemType_ == IT_URL; }

  void SetItemType(tagVSMITEMTYPE type) { itemType_ = type; }
  tagVSMITEMTYPE GetItemType() const { return itemType_; }

  /// The property block, which is created by the first call. Owned by the page; null only when
  /// memory runs out.
  CUrlProp* GetUrlProp();
  /// The property block, or null when it has not been created.
  const CUrlProp* GetUrlProp() const { return urlProp_.get(); }

 protected:
  CUrlNode();
  explicit CUrlNode(const CUrlNode* source);

 private:
  SystemText url_;
  HeapText author_;
  OwnedPointer<CUrlProp> urlProp_;
  tagVSMITEMTYPE itemType_ = IT_URL;
  HeapText relationUrl_;
};

}  // namespace vosmere
