// The document that stores a list of collections.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/collections/colct_item.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_items.h"

namespace vosmere {

/// Writes a list of collections: for each one its title, address, description, times, identity,
/// version, build and owner. Collections of a type other than CT_DEFAULT are left out.
class VOSMERE_API CWriteColctListXML : public CWriteItems {
 public:
  CWriteColctListXML() = default;
  ~CWriteColctListXML() override;

  /// Sets the list to write; null is an empty list. Not owned; it must stay valid until the
  /// document has been written.
  void SetRColctItemHead(RColctItem* head) { head_ = head; }

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  void FillColctNodeToBuffer(CColctNode* colct);
  /// The three times.
  void FillNodeStat(CNodeStat* stat);
  /// Identity, version and build.
  void FillColctNodeExtra(CColctNode* colct);
  /// The owner.
  /// Intended: "File" for "Fill"; existing programs use this name.
  void FileNetData(CColctNetData* data);

 private:
  void LoseOf(const CColctNode& colct);

  RColctItem* head_ = nullptr;
};

/// Reads a list of collections. A document with a root element other than "collectionlist" loads
/// without error and yields an empty list.
///
/// Intended: versions are written but not read. They count the changes of one stored record, and
/// reading a list creates new records.
class VOSMERE_API CReadColctListXML : public CReadXML {
 public:
  CReadColctListXML() = default;
  /// Frees the list if it was not detached.
  ~CReadColctListXML() override;

  /// The list, owned by the reader; null when it is empty. Each further document is appended to it.
  /// After a failed load, what was read so far stays in it.
  RColctItem* GetRColctItemHead() const { return list_.head(); }
  /// The same, but the caller then owns the list and frees it with RColctItem::DeleteList.
  RColctItem* DetachRColctItemHead() { return list_.Detach(); }
  /// Frees the list and its collections.
  void DeleteRColctItemList() { list_.Clear(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  xml::ItemChain<RColctItem> list_;
};

}  // namespace vosmere
