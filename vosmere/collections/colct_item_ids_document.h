// The document that lists which items belong to which collections.
#pragma once

#include <iosfwd>

#include "vosmere/base/export.h"
#include "vosmere/collections/colct_item_id.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes which items belong to which collections: for each entry the two identities and a name.
class VOSMERE_API CWriteColctItemID : public CWriteXML {
 public:
  CWriteColctItemID() = default;
  ~CWriteColctItemID() override;

  /// Sets the entries to write; null is an empty list. Not owned; they must stay valid until the
  /// document has been written. An entry is left out if one of its identities is null or empty.
  void SetRColctItemIDHead(RColctItemID* head) { head_ = head; }
  /// Writes only the identities of collections. Those of items are left out and may be missing.
  void SetColctOnly() { colctOnly_ = 1; }

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  // Intended: "Fil" for "Fill"; existing programs use these names. An entry whose identities cannot
  // be converted to UTF-8 is left out.
  void FilRColctItemIDToBuffer(CColctItemID* id);
  void FilRColctIDOnlyToBuffer(CColctItemID* id);

 private:
  bool PutInto(std::string& utf8, const WChar* id);
  void PutNameAndEnd(const CColctItemID& id);

  RColctItemID* head_ = nullptr;
  LONG colctOnly_ = 0;
};

/// Reads which items belong to which collections. A document with a root element other than
/// "colctitem" loads without error and yields no entries.
class VOSMERE_API CReadColctItemID : public CReadXML {
 public:
  CReadColctItemID() = default;
  /// Frees the entries that were not detached.
  ~CReadColctItemID() override;

  /// Returns the entries, which the caller then owns and frees with RColctItemID::DeleteList; null
  /// when there are none. Until they are detached, each further document is appended to them. After
  /// a failed load, the entries read so far stay.
  RColctItemID* DetachRColctItemIDHead() { return ids_.Detach(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  xml::ItemChain<RColctItemID> ids_;
};

}  // namespace vosmere
