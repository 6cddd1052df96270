// The document of FTP sites: its writer, then its reader.
#include "vosmere/ftp/ftp_sites_document.h"

#include <new>

#include "vosmere/base/owned_text.h"
#include "vosmere/xml/reader_scopes.h"

namespace vosmere {

// Writing.

CWriteFtpSiteXML::~CWriteFtpSiteXML() = default;

bool CWriteFtpSiteXML::FillData() {
  BeginDocument();
  AddHead();
  for (const auto* cell = head_; cell; cell = cell->next) FillFtpConToBuffer(cell->data);
  AddTail();
  return true;
}

void CWriteFtpSiteXML::AddHead() {
  Put("<ftpsites version=\"1.0\">\r\n");
}

void CWriteFtpSiteXML::AddTail() {
  Put("</ftpsites>");
}

void CWriteFtpSiteXML::FillFtpConToBuffer(CFtpConBase* site) {
  LosesOf(nullptr, site->GetTitle());
  Put("<site>");
  PutElementUnlessEmpty<"title">(site->GetTitle());
  PutElementUnlessEmpty<"host">(site->GetHost());
  PutElementUnlessEmpty<"username">(site->GetUserName());
  PutElementUnlessEmpty<"path">(site->GetInitPath());
  if (site->IsPASVMode()) Put("<pasvmode>true</pasvmode>\r\n");
  if (site->GetPort() != CFtpConBase::kDefaultPort) PutElement<"port">(site->GetPort());
  PutElement<"savepsw">(site->IsSavePSW() ? "true" : "false");
  if (site->IsCurrent()) Put("<current>true</current>\r\n");
  PutElementUnlessEmpty<"uuid">(site->GetUUID());
  PutElementUnlessEmpty<"stampid">(site->GetStampID());
  FillWebAddress(site);
  Put("</site>\r\n");
}

void CWriteFtpSiteXML::FillWebAddress(CFtpConBase* site) {
  for (const auto* cell = site->GetFtpWebAddress()->GetHead(); cell; cell = cell->next) {
    const WideView name(cell->GetName()), link(cell->GetLink());
    LoseIf(name.empty() || link.empty(), "a web address without a name or a link is left out");
    if (name.empty() || link.empty()) continue;
    Put("<webaddress name=\"");
    PutRawAttribute(name);
    Put("\" link=\"");
    PutRawAttribute(link);
    Put("\" />");
  }
}

// Reading.

namespace {

using namespace xml;

using Sites = ItemChain<TList<CFtpConBase*>>;
enum Scope : unsigned { kSites = 1, kSite = 2 };

void PassiveWhenTrue(CFtpConBase& site, const WChar* text) {
  if (IsNamedNoCase(WideView(text), "true")) site.SetPASVMode(true);
}

// Intended: port 21 is ignored because it is the default, even if an earlier element has set
// another port.
void PortUnlessDefault(CFtpConBase& site, const WChar* text) {
  const LONG port = NumberFromText(text);
  if (port != CFtpConBase::kDefaultPort) site.SetPort(port);
}

/// Accepts "true" and "false", case-insensitive (ASCII). Any other text changes nothing.
template <auto Setter>
void TrueOrFalse(CFtpConBase& site, const WChar* text) {
  if (IsNamedNoCase(WideView(text), "true")) (site.*Setter)(true);
  if (IsNamedNoCase(WideView(text), "false")) (site.*Setter)(false);
}

/// Both attributes are collected first, because an address needs both.
struct WebAddress {
  SystemText name, link;

  void SetName(const WChar* text) { name.AssignOrNull(text); }
  void SetLink(const WChar* text) { link.AssignOrNull(text); }
};
constexpr Field<WebAddress> kWebAddressFields[] = {
    {"name", Text<&WebAddress::SetName>},
    {"link", Text<&WebAddress::SetLink>},
};

void ReadWebAddress(Sites& sites, const Element& element) {
  if (!sites.item()) return;
  WebAddress address;
  ApplyFields(kWebAddressFields, address, element);
  const WChar *const name = address.name.get(), *const link = address.link.get();
  const bool isWhole = !WideView(name).empty() && !WideView(link).empty();
  if (!isWhole && element.report())
    element.report()->Lose(LossKind::kNotKept,
                           "a web address without a name or a link is not kept");
  if (!isWhole) return;
  if (!sites.item()->GetFtpWebAddress()->Add(name, link)) throw std::bad_alloc();
}

template <auto Apply, FitsTest Fits = nullptr>
constexpr auto TextToSite = TextTo<&Sites::item, Apply, Fits, Sites>;

constexpr ScopedElement<Sites> kElements[] = {
    {kAnywhere, "ftpsites", EndItem, kSites},
    {kAnywhere, "site", BeginItem, kSite, EndItem},
    {kSite, "webaddress", ReadWebAddress},
    {kSite, "title", TextToSite<&CFtpConBase::SetTitle>},
    {kSite, "host", TextToSite<&CFtpConBase::SetHost>},
    {kSite, "username", TextToSite<&CFtpConBase::SetUserName>},
    {kSite, "path", TextToSite<&CFtpConBase::SetInitPath>},
    {kSite, "uuid", TextToSite<&CFtpConBase::SetUUID>},
    {kSite, "stampid", TextToSite<&CFtpConBase::SetStampID>},
    {kSite, "pasvmode", TextToSite<PassiveWhenTrue, FitsTruth>},
    {kSite, "port", TextToSite<PortUnlessDefault, FitsNumber>},
    {kSite, "savepsw", TextToSite<TrueOrFalse<&CFtpConBase::SetSavePSW>, FitsTruth>},
    {kSite, "current", TextToSite<TrueOrFalse<&CFtpConBase::SetCurrent>, FitsTruth>},
};

}  // namespace

CReadFtpSiteXML::~CReadFtpSiteXML() = default;

void CReadFtpSiteXML::InvokeParser(XmlNode root) {
  if (IsRootNamed(root, "ftpsites")) ReadChildren(kElements, sites_, Reported(root), kSites);
}

}  // namespace vosmere
