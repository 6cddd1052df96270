// The document that says which items belong to which collections: its writer and reader.
#pragma once

#include <iosfwd>

#include "vosmere/base/export.h"
#include "vosmere/collections/colct_item_id.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes which items belong to which collections: for each the identities of both and a name.
class VOSMERE_API CWriteColctItemID : public CWriteXML {
 public:
  CWriteColctItemID() = default;
  ~CWriteColctItemID() override;

  /// The entries to write, which must outlive the writing; null is an empty list. One without
  /// either identity, null or empty, is left out.
  void SetRColctItemIDHead(RColctItemID* head) { head_ = head; }
  /// Only collections are written: items' identities are left out, and need not be there.
  void SetColctOnly() { colctOnly_ = 1; }

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  // Intended: the spelling; programs know them by these names. An entry whose identities cannot be
  // converted is left out.
  void FilRColctItemIDToBuffer(CColctItemID* id);
  void FilRColctIDOnlyToBuffer(CColctItemID* id);

 private:
  bool PutInto(std::string& utf8, const WChar* id);
  void PutNameAndEnd(const CColctItemID& id);

  RColctItemID* head_ = nullptr;
  LONG colctOnly_ = 0;
};

/// Reads which items belong to which collections. A root element other than "colctitem" loads, and
/// gives no entries.
class VOSMERE_API CReadColctItemID : public CReadXML {
 public:
  CReadColctItemID() = default;
  /// Frees the entries unless they were detached.
  ~CReadColctItemID() override;

  /// The entries, now the caller's (RColctItemID::DeleteList frees them); null when there are none.
  /// Until they are detached, the next document is appended to them. What was read before a load
  /// failed stays.
  RColctItemID* DetachRColctItemIDHead() { return ids_.Detach(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  xml::ItemChain<RColctItemID> ids_;
};

}  // namespace vosmere
