#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/tree/base_node.h"
#include "vosmere/tree/url_prop.h"

namespace vosmere {

/// What a web-page item stands for.
enum tagVSMITEMTYPE : LONG {
  IT_URL = 0,  ///< a plain address
  IT_NOTE = 1,
  IT_WEBPAGE = 2,
  IT_FILE = 3,
};

/// A web page: an address and, on demand, a property block.
class VOSMERE_API CUrlNode : public CBaseNode {
 public:
  /// A text of this many units is too long for an address, author or related address.
  static constexpr int kTextLimit = 2085;

  /// A new page at "about:blank", or null when memory runs out.
  static CUrlNode* New();
  /// A copy of everything but the link, with a property block of its own if the source has one;
  /// null when memory runs out.
  static CUrlNode* New(CUrlNode* source);

  ~CUrlNode() override;

  /// Null clears.
  /// Intended: a text that is too long is ignored and the old address stays, while author and
  /// related address are cleared. A page never loses its address to an over-long one.
  void SetUrl(const WChar* url) { url_.AssignIfShorter(url, kTextLimit); }
  /// Null only after SetUrl with null.
  WChar* GetUrl() const { return url_.get(); }

  /// Null and a text that is too long clear the author.
  void SetAuthor(const WChar* author) { author_.AssignOrClear(author, kTextLimit); }
  /// May be null.
  WChar* GetAuthor() const { return author_.get(); }

  /// An address related to the page. Null and a text that is too long clear it.
  void SetRelationUrl(const WChar* url) { relationUrl_.AssignOrClear(url, kTextLimit); }
  /// May be null.
  WChar* GetRelationUrl() const { return relationUrl_.get(); }

  /// Whether the item is a plain address; notes, web pages and files answer false whatever their
  /// address says.
  bool HasUrl() const { return url_.get() && itemType_ == IT_URL; }

  void SetItemType(tagVSMITEMTYPE type) { itemType_ = type; }
  tagVSMITEMTYPE GetItemType() const { return itemType_; }

  /// The property block, owned by the page and made on the first call; null only when memory runs
  /// out.
  CUrlProp* GetUrlProp();
  /// The property block if there is one; null otherwise.
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
