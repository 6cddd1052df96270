// Every stored document, for the tests and fuzz targets that hold for all of them: one row each.
#pragma once

#include <memory>
#include <string>

#include "tests/support/wide.h"
#include "vosmere/docs/colct_item_ids.h"
#include "vosmere/docs/colct_list.h"
#include "vosmere/docs/colct_profile.h"
#include "vosmere/docs/notification.h"
#include "vosmere/platform/system_string.h"

namespace vosmere::test {

struct StoredDocument {
  const char* golden;  ///< the file of tests/data that holds the fullest one
  const char* root;    ///< its root element
  std::unique_ptr<CReadXML> (*newReader)();
  /// What the reader has read is written and freed. Null when it has read nothing at all.
  BSTR (*write)(CReadXML& reader);
};

template <class Reader>
std::unique_ptr<CReadXML> NewReader() {
  return std::make_unique<Reader>();
}

template <class Reader, auto Detach, class Writer, auto Set, auto Free>
BSTR WriteAgain(CReadXML& reader) {
  auto* const read = (static_cast<Reader&>(reader).*Detach)();
  Writer writer;
  (writer.*Set)(read);
  BSTR const text = writer.GetXMLBSTR();
  Free(read);
  return text;
}

inline BSTR WriteProfileAgain(CReadXML& reader) {
  auto& profile = static_cast<CReadColctExData&>(reader);
  BSTR const url = profile.DetachDefaultColctUrl();
  CWriteColctExData writer;
  writer.SetDefaultColctUrl(url);
  writer.SetRColctExDataHead(profile.GetRColctExDataHead());
  BSTR const text = writer.GetXMLBSTR();
  profile.DeleteRColctExDataList();
  SysFreeString(url);
  return text;
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
