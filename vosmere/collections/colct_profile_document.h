// The document of the collections' profile: its writer and reader.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/collections/colct_ex_data.h"
#include "vosmere/collections/library_place.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes the profile of the collections: for each where its data is and the identity of its item,
/// and which collection is the default.
class VOSMERE_API CWriteColctExData : public CWriteXML {
 public:
  CWriteColctExData() = default;
  ~CWriteColctExData() override;

  /// The entries to write, which must outlive the writing; null is an empty list.
  void SetRColctExDataHead(RColctExData* head) { head_ = head; }

  /// Makes addresses relative: one that continues behind the base path with `library`, in any case
  /// of the letters A to Z, and then with something more, is written from there. Both are copied;
  /// null for either turns this off. To be called before SetDefaultColctUrl.
  /// Intended: only the length of the base path counts, its characters are never compared, so that
  /// a library that was moved keeps its relative addresses.
  void SetBasePathAndLibrary(const WChar* basePath, const WChar* library) {
    DoWhole([&] { library_.Assign(basePath, library); });
  }

  /// Address of the default collection, copied. Null and empty leave none.
  /// Intended: it is made relative here and now, not when it is written.
  void SetDefaultColctUrl(const WChar* url);

 protected:
  bool FillData() override;

  void AddHead();
  void FillDefaultColct();
  void AddTail();
  void FillColctExDataToBuffer(CColctExData* data);
  /// The written part of an address, a place within it.
  const WChar* GetRelativeStartPos(const WChar* url);

 private:
  RColctExData* head_ = nullptr;
  LibraryPlace library_;
  SystemText defaultColctUrl_;
};

/// Reads the profile of the collections. Addresses come back as they are stored, relative or not. A
/// root element other than "colctprofile" loads, and gives no entries.
class VOSMERE_API CReadColctExData : public CReadXML {
 public:
  CReadColctExData() = default;
  /// Frees what was not detached.
  ~CReadColctExData() override;

  /// The entries, which stay the reader's; null when there are none. The next document is appended
  /// to them. What was read before a load failed stays.
  RColctExData* GetRColctExDataHead() const { return list_.head(); }
  /// The same, now the caller's (RColctExData::DeleteList frees them).
  RColctExData* DetachRColctExDataHead() { return list_.Detach(); }
  void DeleteRColctExDataList() { list_.Clear(); }

  /// The address of the default collection, which the caller frees with SysFreeString; null when
  /// there is none.
  BSTR DetachDefaultColctUrl() { return defaultColctUrl_.Detach(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  xml::ItemChain<RColctExData> list_;
  SystemText defaultColctUrl_;
};

}  // namespace vosmere
