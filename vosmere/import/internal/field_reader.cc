// Reads documents of other programs with the exact readers, and notices what is unusual.
#include "vosmere/import/internal/field_reader.h"

#include <cstdio>
#include <string>
#include <utility>

#include "vosmere/base/owned_text.h"
#include "vosmere/collections/opml_reader.h"
#include "vosmere/collections/rss_reader.h"
#include "vosmere/import/internal/addresses.h"
#include "vosmere/import/internal/utf8_text.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/tree/tree_walk.h"
#include "vosmere/tree/url_node.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::importing {
namespace {

using xml::IsNamed;

/// Whether an address has blanks around it or runs something. Nearly all begin with "http".
bool IsOddAddress(WideView address) {
  if (address.empty()) return false;
  if (ascii::IsBlank(address[0]) || ascii::IsBlank(address[address.size - 1])) return true;
  if (xml::BeginsWithNoCase(address, "http")) return false;
  return RunsSomething(BytesOf(kCodePageUtf8, address));
}

/// Reads a tree, and looks at every outline until one is odd. Whatever is not known to be usual is
/// odd: then the repair looks at it in detail.
class FieldOpml : public CParseOPML {
 public:
  FieldOpml() { SetReadPages(true); }
  bool IsOdd() const { return isOdd_; }

 protected:
  void ProcessElementNode(XmlNode node) override {
    if (depth() == 2) inBody_ = IsNamed(node.Name().view(), "body");
    if (!isOdd_) Look(node);
    CParseOPML::ProcessElementNode(std::move(node));
  }

 private:
  enum Has : unsigned { kType = 1, kXmlUrl = 2, kUrl = 4, kHtmlUrl = 8, kLink = 16 };

  void Look(const XmlNode& node) {
    const XmlText name = node.Name();
    if (IsNamed(name.view(), "outline"))
      isOdd_ = !inBody_ || IsOddOutline(node);
    else
      isOdd_ = xml::IsNamedNoCase(name.view(), "outline");
  }

  static bool IsOddOutline(const XmlNode& node) {
    unsigned has = 0;
    std::basic_string<WChar> text;
    bool isOdd = false;
    for (XmlAttributes attributes(node); attributes.Next() && !isOdd;)
      isOdd = IsOddAttribute(attributes.Name().view(), attributes.Value().view(), &has, &text);
    if (isOdd || (has & kXmlUrl)) return isOdd || (has & kLink);
    return (has & kUrl) ? !(has & kLink) : (has & kHtmlUrl) && !(has & kType);
  }

  static bool IsOddAttribute(WideView name, WideView value, unsigned* has,
                             std::basic_string<WChar>* text) {
    if (IsNamed(name, "text") || IsNamed(name, "title")) {
      if (!text->empty() && WideView(text->data(), text->size()) != value) return true;
      text->assign(value.begin(), value.end());
      return false;
    }
    if (IsNamed(name, "type")) {
      const bool isLink = IsNamed(value, "link");
      *has |= kType | (isLink ? kLink : 0u);
      return !isLink && !IsNamed(value, "rss");
    }
    const unsigned url = IsNamed(name, "xmlUrl")    ? kXmlUrl
                         : IsNamed(name, "htmlUrl") ? kHtmlUrl
                         : IsNamed(name, "url")     ? kUrl
                                                    : 0u;
    if (!value.empty()) *has |= url;
    return url ? IsOddAddress(value) : IsKnownOtherwise(name);
  }

  static bool IsKnownOtherwise(WideView name) {
    constexpr std::string_view kNames[] = {"text", "title", "type", "xmlurl", "htmlurl", "url"};
    for (const std::string_view known : kNames)
      if (xml::IsNamedNoCase(name, known)) return true;
    return xml::IsNamedNoCase(name, "description") && !IsNamed(name, "description");
  }

  bool inBody_ = false;
  bool isOdd_ = false;
};

[[noreturn]] void FailOtherKind(const XmlNode& root) {
  DocumentFailure failure;
  failure.error.fault = DocumentFault::kMalformed;
  const std::string name = BytesOf(kCodePageUtf8, FirstWhole(root.Name().view(), 40));
  std::snprintf(failure.error.reason, sizeof failure.error.reason,
                "an import reads 'opml', 'rss' and bookmark files, and this is '%s'", name.c_str());
  throw failure;
}

}  // namespace

FieldReader::~FieldReader() {
  DeleteTree(tree_);
  DeleteWithLocalTree(colct_);
}

RNode* FieldReader::DetachTree() {
  return std::exchange(tree_, nullptr);
}

CColctNode* FieldReader::DetachColct() {
  return std::exchange(colct_, nullptr);
}

void FieldReader::InvokeParser(XmlNode root) {
  const XmlText name = root.Name();
  const unsigned long cutBefore = CutTexts();
  if (IsNamed(name.view(), "opml"))
    ReadTree(root);
  else if (IsNamed(name.view(), "rss"))
    ReadColct(root);
  else
    FailOtherKind(root);
  isOdd_ |= CutTexts() != cutBefore;  // an address that is too long
}

void FieldReader::ReadTree(const XmlNode& root) {
  FieldOpml parser;
  parser.ParseXMLTree(root);
  ThrowIfTextsWereLost();
  isOdd_ = parser.IsOdd();
  tree_ = static_cast<RNode*>(parser.DetachData());
}

void FieldReader::ReadColct(const XmlNode& root) {
  CReadBkmarkXML reader;
  reader.SetReadForeign(true);
  if (!reader.ReadParsed(root, *this)) throw DocumentFailure{reader.LastError()};
  isOdd_ = reader.HadUnread();
  colct_ = reader.DetachColctNode();
  if (!colct_) return;
  WalkBelow(
      colct_->GetLocRNodeRoot(),
      [&](RNode* link) {
        if (link->type == NT_URL && !isOdd_)
          isOdd_ = IsOddAddress(WideView(static_cast<CUrlNode*>(link->item)->GetUrl()));
        return true;
      },
      [](RNode*) {});
}

}  // namespace vosmere::importing
