// What a kind of document says for itself, in a file of its own below kinds/, and in a row of the
// table in document.cc. Showing, auditing, rehearsing and saving are written once, over this.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string_view>

#include "tools/document_content.h"
#include "tools/known_elements.h"
#include "tools/show.h"
#include "vosmere/tree/base_node.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere::tool {

/// Is shown an item of a document, which stays the document's.
using ItemVisit = std::function<void(CBaseNode& item)>;

/// What a reader built.
class Loaded {
 public:
  Loaded() = default;
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;
  virtual ~Loaded() = default;

  /// All that a document of this kind can hold; the same for whoever loads what the writer writes.
  virtual Record Content() const = 0;
  /// A writer of it, which may change what it writes on purpose.
  virtual std::unique_ptr<CWriteXML> Writer() const = 0;
  /// Shows all items in document order, if it holds any.
  virtual void ForEachItem(const ItemVisit&) const {}
};

struct Kind {
  std::string_view root;  ///< the name of its root element
  std::string_view what;  ///< what it is, for people
  std::span<const Count> counts;
  Vocabulary vocabulary;
  /// Reads a parsed document. Null when there is nothing in it.
  std::unique_ptr<Loaded> (*load)(const XmlNode& root);
};

extern const Kind kColctItemIds;
extern const Kind kColctList;
extern const Kind kColctProfile;
extern const Kind kFtpSites;
extern const Kind kNotification;
extern const Kind kOpml;
extern const Kind kPageData;
extern const Kind kRss;
extern const Kind kSearchEngines;
extern const Kind kTags;
extern const Kind kToolbars;

}  // namespace vosmere::tool
