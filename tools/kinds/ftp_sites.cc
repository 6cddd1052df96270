// FTP sites to publish to.
#include "vosmere/ftp/ftp_sites_document.h"

#include "tools/kind.h"
#include "tools/kinds/items.h"
#include "tools/loss_on_load.h"

namespace vosmere::tool {
namespace {

Record AddressContent(const CFtpWebAddress::Cell& address) {
  Record record{"address"};
  record.Add("name", TextOf(address.GetName()), kRaw);
  record.Add("link", TextOf(address.GetLink()), kOnLine | kRaw);
  return record;
}

Record SiteContent(CFtpConBase& site) {
  Record record{"site"};
  record.Add("name", TextOf(site.GetTitle()));
  record.Add("host", TextOf(site.GetHost()), kOnLine);
  record.Add("userName", TextOf(site.GetUserName()));
  record.Add("path", TextOf(site.GetInitPath()));
  record.Add("passive", site.IsPASVMode());
  record.Add("port", site.GetPort());
  record.Add("savePassword", site.IsSavePSW());
  record.Add("current", site.IsCurrent(), kOnLine);
  record.Add("id", TextOf(site.GetUUID()));
  record.Add("stampId", TextOf(site.GetStampID()));
  record.isContainer = true;
  record.children = Records::Of<AddressContent>(site.GetFtpWebAddress()->GetHead());
  return record;
}

using Sites = TList<CFtpConBase*>;

Record ListContent(Sites* head) {
  Record record{"sites"};
  AddChildren<SiteContent>(record, head);
  return record;
}

using LoadedSites =
    LoadedAs<ItemList<Sites>, ListContent, CWriteFtpSiteXML, &CWriteFtpSiteXML::SetFtpConList>;

constexpr Word kWords[] = {
    {"", "ftpsites", "version"},
    {"*", "site", "", true},
    {"site", "title", "="},
    {"site", "host", "="},
    {"site", "username", "="},
    {"site", "path", "="},
    {"site", "pasvmode", "=?"},
    {"site", "port", "=#"},
    {"site", "savepsw", "=?"},
    {"site", "current", "=?"},
    {"site", "uuid", "="},
    {"site", "stampid", "="},
    {"site", "webaddress", "name link"},
};

void Inspect(const XmlNode& element, std::string_view name, std::string_view scope,
             const Report& report) {
  InspectNesting(name, scope, report);
  if (name != "webaddress") return;
  for (const char* const part : {"name", "link"})
    if (AttributeOf(element, part).value_or("").empty())
      return report("a web address without a name or a link is not kept");
}

constexpr Count kCounts[] = {{"site", "sites"}};

}  // namespace

const Kind kFtpSites = {
    "ftpsites",
    "FTP sites",
    kCounts,
    {.words = kWords, .inspect = Inspect},
    LoadedSites::LoadList<CReadFtpSiteXML, &CReadFtpSiteXML::DetachFtpSiteList>};

}  // namespace vosmere::tool
