// The document of a list of collections: its writer and reader.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/collections/colct_item.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_items.h"

namespace vosmere {

/// Writes a list of collections: for each its title, address, description, times, identity,
/// version, build and owner. Collections of another type than CT_DEFAULT are left out.
class VOSMERE_API CWriteColctListXML : public CWriteItems {
 public:
  CWriteColctListXML() = default;
  ~CWriteColctListXML() override;

  /// The list to write, which must outlive the writing; null is an empty list.
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
  /// The owner. Intended: the spelling; programs know it by this name.
  void FileNetData(CColctNetData* data);

 private:
  void LoseOf(const CColctNode& colct);

  RColctItem* head_ = nullptr;
};

/// Reads a list of collections. A root element other than "collectionlist" loads, and gives an
/// empty list.
///
/// Intended: versions are written but not read. They count the changes of one stored record, and
/// who reads a list makes new records.
class VOSMERE_API CReadColctListXML : public CReadXML {
 public:
  CReadColctListXML() = default;
  /// Frees the list unless it was detached.
  ~CReadColctListXML() override;

  /// The list, which stays the reader's; null when it is empty. The next document is appended to
  /// it. What was read before a load failed stays in it.
  RColctItem* GetRColctItemHead() const { return list_.head(); }
  /// The same, now the caller's (RColctItem::DeleteList frees it).
  RColctItem* DetachRColctItemHead() { return list_.Detach(); }
  void DeleteRColctItemList() { list_.Clear(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  xml::ItemChain<RColctItem> list_;
};

}  // namespace vosmere
