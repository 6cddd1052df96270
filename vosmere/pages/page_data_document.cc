// The page data document: its writer, then its reader.
#include "vosmere/pages/page_data_document.h"

#include <string>
#include <string_view>
#include <utility>

#include "vosmere/xml/reader_scopes.h"

namespace vosmere {

// Writing.

CWritePageDataXML::~CWritePageDataXML() = default;

bool CWritePageDataXML::FillData() {
  if (!data_) return false;
  BeginDocument();
  AddHead();
  FillPageData();
  AddTail();
  return true;
}

void CWritePageDataXML::AddHead() {
  Put("<vsmpagedata version=\"1.0\">\r\n");
}

void CWritePageDataXML::AddTail() {
  Put("</vsmpagedata>");
}

void CWritePageDataXML::FillPageData() {
  FillText(data_->GetPageTitle(), "pageTitle");
  FillText(data_->GetBrand(), "brand");
  FillText(data_->GetBrandLink(), "brandLink");
  FillText(data_->GetDescription(), "desc");
  FillText(data_->GetIndexTitle(), "indexTitle");
  FillText(data_->GetContentTitle(), "contentTitle");
  FillText(data_->GetRootNodeTitle(), "rootNodeTitle");
  FillText(data_->GetTemplateName(), "templateName");
}

void CWritePageDataXML::FillText(const WChar* value, const char* elementName) {
  const std::string_view name(elementName);
  std::string text;
  if (!value || name.size() >= 125 || !EscapedUtf8(WideView(value), text)) return;
  Put("<");
  PutBytes(name);
  Put(">");
  PutBytes(text);
  Put("</");
  PutBytes(name);
  Put(">\n");
}

// Reading.

namespace {

using namespace xml;

struct Page {
  CPageData* data;
};
enum Scope : unsigned { kPage = 1 };

template <auto Setter>
constexpr auto TextToPage = TextTo<&Page::data, Setter, nullptr, Page>;

constexpr ScopedElement<Page> kElements[] = {
    {kPage, "pageTitle", TextToPage<&CPageData::SetPageTitle>},
    {kPage, "brand", TextToPage<&CPageData::SetBrand>},
    {kPage, "brandLink", TextToPage<&CPageData::SetBrandLink>},
    {kPage, "desc", TextToPage<&CPageData::SetDescription>},
    {kPage, "indexTitle", TextToPage<&CPageData::SetIndexTitle>},
    {kPage, "contentTitle", TextToPage<&CPageData::SetContentTitle>},
    {kPage, "rootNodeTitle", TextToPage<&CPageData::SetRootNodeTitle>},
    {kPage, "templateName", TextToPage<&CPageData::SetTemplateName>},
};

}  // namespace

CReadPageDataXML::~CReadPageDataXML() = default;

void CReadPageDataXML::InvokeParser(XmlNode root) {
  ParseXMLTree(std::move(root));
}

void CReadPageDataXML::ParseXMLTree(XmlNode node) {
  if (node.Type() == kXmlElement) ProcessElementNode(std::move(node));
}

void CReadPageDataXML::ProcessElementNode(XmlNode node) {
  ProcessElmRootScope(node);
}

void CReadPageDataXML::ProcessElmRootScope(const XmlNode& node) {
  if (!data_ || !IsRootNamed(node, "vsmpagedata")) return;
  Page page{data_};
  ReadChildren(kElements, page, Reported(node), kPage);
}

void CReadPageDataXML::ProcessElmItemScope(const XmlNode& node) {
  Page page{data_};
  ReadElement(kElements, page, Reported(node), kPage);
}

}  // namespace vosmere
