// Every stored document, for the tests and fuzz targets that hold for all of them: one row each.
#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "tests/support/wide.h"
#include "vosmere/base/system_string.h"
#include "vosmere/collections/colct_item_ids_document.h"
#include "vosmere/collections/colct_list_document.h"
#include "vosmere/collections/colct_profile_document.h"
#include "vosmere/engines/search_engines_document.h"
#include "vosmere/ftp/ftp_sites_document.h"
#include "vosmere/notify/notification_document.h"
#include "vosmere/pages/page_data_document.h"
#include "vosmere/tags/tags_document.h"
#include "vosmere/toolbars/toolbars_document.h"

namespace vosmere::test {

struct StoredDocument {
  const char* golden;  ///< the file of tests/data that holds the fullest one
  const char* root;    ///< its root element
  std::unique_ptr<CReadXML> (*newReader)();
  /// What the reader has read is written and freed. Null when it has read nothing at all.
  BSTR (*write)(CReadXML& reader);
  /// Whether its elements count within any root element.
  bool anyRoot = false;

  friend void PrintTo(const StoredDocument& document, std::ostream* out) { *out << document.root; }
};

template <class Reader>
std::unique_ptr<CReadXML> NewReader() {
  return std::make_unique<Reader>();
}

/// Owns what is freed with a function.
template <auto Free>
struct FreeWith {
  template <class Head>
  void operator()(Head* head) const {
    Free(head);
  }
};
template <class Head, auto Free>
using Owned = std::unique_ptr<Head, FreeWith<Free>>;

template <class Reader, auto Detach, class Writer, auto Set, auto Free>
BSTR WriteAgain(CReadXML& reader) {
  auto* const head = (static_cast<Reader&>(reader).*Detach)();
  const Owned<std::remove_pointer_t<decltype(head)>, Free> read(head);
  Writer writer;
  (writer.*Set)(head);
  return writer.GetXMLBSTR();
}

inline BSTR WriteProfileAgain(CReadXML& reader) {
  auto& profile = static_cast<CReadColctExData&>(reader);
  const OwnedBstr url(profile.DetachDefaultColctUrl());
  CWriteColctExData writer;
  writer.SetDefaultColctUrl(url.get());
  writer.SetRColctExDataHead(profile.GetRColctExDataHead());
  BSTR const text = writer.GetXMLBSTR();
  profile.DeleteRColctExDataList();
  return text;
}

/// Null also for sites that are not to be written: their web addresses would make the document
/// unreadable.
inline BSTR WriteSitesAgain(CReadXML& reader) {
  using List = TList<CFtpConBase*>;
  const Owned<List, list::DeleteItems<List>> sites(
      static_cast<CReadFtpSiteXML&>(reader).DetachFtpSiteList());
  bool fit = true;
  for (auto* cell = sites.get(); cell; cell = cell->next)
    for (auto* address = cell->data->GetFtpWebAddress()->GetHead(); address;
         address = address->next)
      for (const WChar* const text : {address->GetName(), address->GetLink()})
        fit = fit && Utf8(text).find_first_of("\"&<") == std::string::npos;
  CWriteFtpSiteXML writer;
  writer.SetFtpConList(sites.get());
  return fit ? writer.GetXMLBSTR() : nullptr;
}

struct PageDataReader : CReadPageDataXML {
  PageDataReader() : CReadPageDataXML(&page) {}
  CPageData page;
};

inline BSTR WritePageAgain(CReadXML& reader) {
  return CWritePageDataXML(&static_cast<PageDataReader&>(reader).page).GetXMLBSTR();
}

inline BSTR WriteToolbarsAgain(CReadXML& reader) {
  const std::unique_ptr<CTBarBandInfo> bands(static_cast<CTBarBandInfo*>(reader.DetachData()));
  CWriteToolbarXML writer;
  writer.SetTBarBandInfo(bands.get());
  return writer.GetXMLBSTR();
}

inline constexpr StoredDocument kStoredDocuments[] = {
    {"colct_list.xml", "collectionlist", NewReader<CReadColctListXML>,
     WriteAgain<CReadColctListXML, &CReadColctListXML::DetachRColctItemHead, CWriteColctListXML,
                &CWriteColctListXML::SetRColctItemHead, RColctItem::DeleteList>},
    {"colct_item_ids.xml", "colctitem", NewReader<CReadColctItemID>,
     WriteAgain<CReadColctItemID, &CReadColctItemID::DetachRColctItemIDHead, CWriteColctItemID,
                &CWriteColctItemID::SetRColctItemIDHead, RColctItemID::DeleteList>},
    {"colct_profile.xml", "colctprofile", NewReader<CReadColctExData>, WriteProfileAgain},
    {"notification.xml", "vsmnotify", NewReader<CReadVSMNotify>,
     WriteAgain<CReadVSMNotify, &CReadVSMNotify::DetachVSMNotifyMsg, CWriteVSMNotifyMsg,
                &CWriteVSMNotifyMsg::SetVSMNotifyMsg, CVSMNotifyMsg::Delete>},
    {"search_engines.xml", "searchEnginePool", NewReader<CReadSEngineXML>,
     WriteAgain<CReadSEngineXML, &CReadSEngineXML::DetachEnginePool, CWriteSEngineXML,
                &CWriteSEngineXML::SetEnginePool, CBaseNode::Delete>,
     true},
    {"tags.xml", "vsmtags", NewReader<CReadTagsXML>,
     WriteAgain<CReadTagsXML, &CReadTagsXML::DetachTagGroupHead, CWriteTagsXML,
                &CWriteTagsXML::SetTagGroupHead, CTagStore::DeleteRTagGroupList>},
    {"ftp_sites.xml", "ftpsites", NewReader<CReadFtpSiteXML>, WriteSitesAgain},
    {"page_data.xml", "vsmpagedata", NewReader<PageDataReader>, WritePageAgain},
    {"toolbars.xml", "toolbars", NewReader<CReadVosmereXML>, WriteToolbarsAgain},
};

/// What comes of a document when it is read and written again; "(not loaded)" when it does not
/// load.
inline std::string Rewritten(const StoredDocument& document, const std::string& bytes) {
  const auto reader = document.newReader();
  if (!reader->LoadXML(bytes.data(), static_cast<int>(bytes.size()))) return "(not loaded)";
  return OwnedBstr(document.write(*reader)).utf8();
}
inline std::string Rewritten(const std::string& golden, const std::string& bytes) {
  for (const StoredDocument& document : kStoredDocuments)
    if (golden == document.golden) return Rewritten(document, bytes);
  return "(not known)";
}

}  // namespace vosmere::test
