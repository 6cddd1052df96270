// The page data document: its writer, then its reader.
#include "vosmere/pages/page_data_document.h"

#include <string>
#include <string_view>
#include <utility>

#include "vosmere/xml/reader_fields.h"

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

constexpr Field<CPageData> kTexts[] = {
    {"pageTitle", Text<&CPageData::SetPageTitle>},
    {"brand", Text<&CPageData::SetBrand>},
    {"brandLink", Text<&CPageData::SetBrandLink>},
    {"desc", Text<&CPageData::SetDescription>},
    {"indexTitle", Text<&CPageData::SetIndexTitle>},
    {"contentTitle", Text<&CPageData::SetContentTitle>},
    {"rootNodeTitle", Text<&CPageData::SetRootNodeTitle>},
    {"templateName", Text<&CPageData::SetTemplateName>},
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
  for (XmlNode child = node.FirstChild(); child; child = child.NextSibling())
    if (child.Type() == kXmlElement) ProcessElmItemScope(child);
}

void CReadPageDataXML::ProcessElmItemScope(const XmlNode& node) {
  ApplyField(kTexts, *data_, node.Name().view(), node.Text().c_str());
}

}  // namespace vosmere
