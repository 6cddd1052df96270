// The document that stores the profile of the collections.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/collections/colct_ex_data.h"
#include "vosmere/collections/library_place.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes the profile of the collections: for each one the address of its data and the identity of
/// its item, and the address of the default collection.
class VOSMERE_API CWriteColctExData : public CWriteXML {
 public:
  CWriteColctExData() = default;
  ~CWriteColctExData() override;

  /// Sets the entries to write; null is an empty list. Not owned; they must stay valid until the
  /// document has been written.
  void SetRColctExDataHead(RColctExData* head) { head_ = head; }

  /// Makes addresses relative: if `library` occurs in an address directly after the length of the
  /// base path, compared case-insensitively (ASCII), and more text follows, the address is written
  /// from there on. Both arguments are copied; null for either turns this off. Must be called
  /// before SetDefaultColctUrl.
  /// Intended: only the length of the base path matters, its characters are never compared, so that
  /// a library that was moved keeps its relative addresses.
  void SetBasePathAndLibrary(const WChar* basePath, const WChar* library) {
    DoWhole([&] { library_.Assign(basePath, library); });
  }

  /// Sets the address of the default collection, which is copied. Null and the empty text remove
  /// it.
  /// Intended: it is made relative in this call, not when the document is written.
  void SetDefaultColctUrl(const WChar* url);

 protected:
  bool FillData() override;

  void AddHead();
  void FillDefaultColct();
  void AddTail();
  void FillColctExDataToBuffer(CColctExData* data);
  /// The part of an address that is written: a pointer into `url`.
  const WChar* GetRelativeStartPos(const WChar* url);

 private:
  RColctExData* head_ = nullptr;
  LibraryPlace library_;
  SystemText defaultColctUrl_;
};

/// Reads the profile of the collections. Addresses are returned as stored, relative or not. A
/// document with a root element other than "colctprofile" loads without error and yields no
/// entries.
class VOSMERE_API CReadColctExData : public CReadXML {
 public:
  CReadColctExData() = default;
  /// Frees what was not detached.
  ~CReadColctExData() override;

  /// The entries, owned by the reader; null when there are none. Each further document is appended
  /// to them. After a failed load, the entries read so far stay.
  RColctExData* GetRColctExDataHead() const { return list_.head(); }
  /// The same, but the caller then owns the entries and frees them with RColctExData::DeleteList.
  RColctExData* DetachRColctExDataHead() { return list_.Detach(); }
  /// Frees the entries.
  void DeleteRColctExDataList() { list_.Clear(); }

  /// Returns the address of the default collection, which the caller then owns and frees with
  /// SysFreeString; null when there is none.
  BSTR DetachDefaultColctUrl() { return defaultColctUrl_.Detach(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  xml::ItemChain<RColctExData> list_;
  SystemText defaultColctUrl_;
};

}  // namespace vosmere
