// Search engines.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/tree/base_node.h"

namespace vosmere {

/// A search engine: the address for queries, and how the engine is shown to the user.
///
/// Intended: the required texts (address and search type) may have up to 2084 code units, the
/// optional ones up to 2083, and a text that is too long is ignored for the former but clears the
/// latter. Stored pools rely on both.
class VOSMERE_API CEngineNode : public CBaseNode {
 public:
  /// A new engine with the address "about:blank" and the search type "web"; null when memory runs
  /// out. Freed with Delete.
  static CEngineNode* New();
  /// A copy of everything but the link; null when memory runs out.
  static CEngineNode* New(CEngineNode* source);

  ~CEngineNode() override;

  /// The address for queries. Null and a text of more than 2084 code units are ignored.
  void SetUrl(const WChar* url) { AssignUnlessUnfit(url_, url); }
  /// Never null.
  WChar* GetUrl() const { return url_.get(); }

  /// The kind of search, such as "web". Null and a text of more than 2084 code units are ignored.
  void SetSearchType(const WChar* type) { AssignUnlessUnfit(searchType_, type); }
  /// Never null.
  WChar* GetSearchType() const { return searchType_.get(); }

  // The optional texts, null in a new engine. Null and a text of more than 2083 code units make
  // them null.

  /// The address of the icon.
  void SetIconUrl(const WChar* url) { iconUrl_.AssignOrClear(url, kTextLimit - 1); }
  WChar* GetIconUrl() const { return iconUrl_.get(); }
  /// A short text that is shown instead of the icon or beside it.
  void SetIconText(const WChar* text) { iconText_.AssignOrClear(text, kTextLimit - 1); }
  WChar* GetIconText() const { return iconText_.get(); }
  /// The site to which the search is restricted.
  void SetStoredSite(const WChar* site) { storedSite_.AssignOrClear(site, kTextLimit - 1); }
  WChar* GetStoredSite() const { return storedSite_.get(); }

 protected:
  CEngineNode();
  explicit CEngineNode(const CEngineNode* source);

 private:
  /// A text of this many code units or more is too long for address and search type.
  static constexpr int kTextLimit = 2085;

  static void AssignUnlessUnfit(HeapText& field, const WChar* text) {
    if (text) field.AssignIfShorter(text, kTextLimit);
  }

  HeapText url_;
  HeapText iconUrl_;
  HeapText iconText_;
  HeapText searchType_;
  HeapText storedSite_;
};

}  // namespace vosmere
