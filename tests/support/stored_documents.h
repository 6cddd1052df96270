// All documents, one row each, for the tests and fuzz targets that check all of them.
#pragma once

#include <functional>
#include <iterator>
#include <memory>
#include <ostream>
#include <string>

#include "tests/support/wide.h"
#include "vosmere/collections/colct_item_ids_document.h"
#include "vosmere/collections/colct_list_document.h"
#include "vosmere/collections/colct_profile_document.h"
#include "vosmere/collections/opml_reader.h"
#include "vosmere/collections/opml_writer.h"
#include "vosmere/collections/rss_reader.h"
#include "vosmere/collections/rss_writer.h"
#include "vosmere/cpp/own.h"
#include "vosmere/engines/search_engines_document.h"
#include "vosmere/ftp/ftp_sites_document.h"
#include "vosmere/notify/notification_document.h"
#include "vosmere/pages/page_data_document.h"
#include "vosmere/tags/tags_document.h"
#include "vosmere/toolbars/toolbars_document.h"

namespace vosmere::test {

struct StoredDocument {
  const char* golden;  ///< the file of tests/data with everything that the document can have
  const char* root;    ///< its root element
  std::unique_ptr<CReadXML> (*newReader)();
  /// Writes what the reader has read, and frees it. Null if there is nothing to write.
  BSTR (*write)(CReadXML& reader);
  bool anyRoot = false;  ///< whether its elements count within any root element

  friend void PrintTo(const StoredDocument& document, std::ostream* out) { *out << document.root; }
};

template <class Reader>
std::unique_ptr<CReadXML> NewReader() {
  return std::make_unique<Reader>();
}

template <class Reader, auto Detach, class Handle, class Writer, auto Set>
BSTR WriteAgain(CReadXML& reader) {
  const Handle read(std::invoke(Detach, static_cast<Reader&>(reader)));
  Writer writer;
  std::invoke(Set, writer, read.get());
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

/// Null also for sites that cannot be written, because their web addresses would make the document
/// unreadable.
inline BSTR WriteSitesAgain(CReadXML& reader) {
  const FtpSiteList sites(static_cast<CReadFtpSiteXML&>(reader).DetachFtpSiteList());
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

inline CTBarBandInfo* DetachBands(CReadVosmereXML& reader) {
  return static_cast<CTBarBandInfo*>(reader.DetachData());
}

/// The last two, the trees, have fuzz targets of their own.
inline constexpr StoredDocument kStoredDocuments[] = {
    {"colct_list.xml", "collectionlist", NewReader<CReadColctListXML>,
     WriteAgain<CReadColctListXML, &CReadColctListXML::DetachRColctItemHead, vosmere::ColctList,
                CWriteColctListXML, &CWriteColctListXML::SetRColctItemHead>},
    {"colct_item_ids.xml", "colctitem", NewReader<CReadColctItemID>,
     WriteAgain<CReadColctItemID, &CReadColctItemID::DetachRColctItemIDHead, ColctItemNameList,
                CWriteColctItemID, &CWriteColctItemID::SetRColctItemIDHead>},
    {"colct_profile.xml", "colctprofile", NewReader<CReadColctExData>, WriteProfileAgain},
    {"notification.xml", "vsmnotify", NewReader<CReadVSMNotify>,
     WriteAgain<CReadVSMNotify, &CReadVSMNotify::DetachVSMNotifyMsg, Notification,
                CWriteVSMNotifyMsg, &CWriteVSMNotifyMsg::SetVSMNotifyMsg>},
    {"search_engines.xml", "searchEnginePool", NewReader<CReadSEngineXML>,
     WriteAgain<CReadSEngineXML, &CReadSEngineXML::DetachEnginePool, Item<CEnginePool>,
                CWriteSEngineXML, &CWriteSEngineXML::SetEnginePool>,
     true},
    {"tags.xml", "vsmtags", NewReader<CReadTagsXML>,
     WriteAgain<CReadTagsXML, &CReadTagsXML::DetachTagGroupHead, TagGroupList, CWriteTagsXML,
                &CWriteTagsXML::SetTagGroupHead>},
    {"ftp_sites.xml", "ftpsites", NewReader<CReadFtpSiteXML>, WriteSitesAgain},
    {"page_data.xml", "vsmpagedata", NewReader<PageDataReader>, WritePageAgain},
    {"toolbars.xml", "toolbars", NewReader<CReadVosmereXML>,
     WriteAgain<CReadVosmereXML, DetachBands, ToolbarBands, CWriteToolbarXML,
                &CWriteToolbarXML::SetTBarBandInfo>},
    {"collection_tree.opml", "opml", NewReader<CReadColctTreeOPML>,
     WriteAgain<CReadColctTreeOPML, &CReadColctTreeOPML::DetachTreeRoot, vosmere::Tree,
                CWriteColctTreeOPML, &CWriteColctTreeOPML::SetTreeRoot>},
    {"collection.rss", "rss", NewReader<CReadBkmarkXML>,
     WriteAgain<CReadBkmarkXML, &CReadBkmarkXML::DetachColctNode, Collection, CWriteColctRSS,
                &CWriteColctRSS::SetColctNode>},
};

/// A document after it was read and written again; "(not loaded)" if it does not load.
inline std::string Rewritten(const StoredDocument& document, const std::string& bytes) {
  const auto reader = document.newReader();
  if (!reader->LoadXML(bytes.data(), static_cast<int>(bytes.size()))) return "(not loaded)";
  return OwnedBstr(document.write(*reader)).utf8();
}

}  // namespace vosmere::test
