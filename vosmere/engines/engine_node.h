#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/tree/base_node.h"

namespace vosmere {

/// A search engine: where a query goes, and how the engine shows itself.
///
/// Intended: the texts' limits differ by one between what an engine must have (address and search
/// type, 2084 units) and what it may have (the others, 2083), and so does what becomes of a text
/// beyond them: the former keep what they hold, the latter are cleared. Stored pools rely on both.
class VOSMERE_API CEngineNode : public CBaseNode {
 public:
  /// A new engine at "about:blank" of the search type "web", or null when memory runs out.
  static CEngineNode* New();
  /// A copy of everything but the link; null when memory runs out.
  static CEngineNode* New(CEngineNode* source);

  ~CEngineNode() override;

  /// The query address. Null and a text of more than 2084 units are ignored.
  void SetUrl(const WChar* url) { AssignUnlessUnfit(url_, url); }
  /// Never null.
  WChar* GetUrl() const { return url_.get(); }

  /// The kind of search that the engine serves. Null and a text of more than 2084 units are
  /// ignored.
  void SetSearchType(const WChar* type) { AssignUnlessUnfit(searchType_, type); }
  /// Never null.
  WChar* GetSearchType() const { return searchType_.get(); }

  // What an engine may have. Null and a text of more than 2083 units clear it; it is null then.

  /// Address of the icon.
  void SetIconUrl(const WChar* url) { iconUrl_.AssignOrClear(url, kTextLimit - 1); }
  WChar* GetIconUrl() const { return iconUrl_.get(); }
  /// Short text in place of the icon, or beside it.
  void SetIconText(const WChar* text) { iconText_.AssignOrClear(text, kTextLimit - 1); }
  WChar* GetIconText() const { return iconText_.get(); }
  /// The site that the search is restricted to.
  void SetStoredSite(const WChar* site) { storedSite_.AssignOrClear(site, kTextLimit - 1); }
  WChar* GetStoredSite() const { return storedSite_.get(); }

 protected:
  CEngineNode();
  explicit CEngineNode(const CEngineNode* source);

 private:
  /// A text of this many units is too long for the address.
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
