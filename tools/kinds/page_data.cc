// How a published page presents itself.
#include "vosmere/pages/page_data_document.h"

#include "tools/kind.h"
#include "tools/kinds/items.h"

namespace vosmere::tool {
namespace {

/// Null for null: of a page also an empty text says something.
Json ExactTextOf(const WChar* text) {
  return text ? Json(ToUtf8(text)) : Json();
}

class LoadedPage : public Loaded {
 public:
  explicit LoadedPage(std::unique_ptr<CPageData> page) : page_(std::move(page)) {}

  Record Content() const override {
    Record record{"page"};
    record.Add("pageTitle", ExactTextOf(page_->GetPageTitle()));
    record.Add("brand", ExactTextOf(page_->GetBrand()), kOwnLine);
    record.Add("brandLink", ExactTextOf(page_->GetBrandLink()), kOwnLine);
    record.Add("description", ExactTextOf(page_->GetDescription()), kOwnLine);
    record.Add("indexTitle", ExactTextOf(page_->GetIndexTitle()), kOwnLine);
    record.Add("contentTitle", ExactTextOf(page_->GetContentTitle()), kOwnLine);
    record.Add("rootNodeTitle", ExactTextOf(page_->GetRootNodeTitle()), kOwnLine);
    record.Add("templateName", ExactTextOf(page_->GetTemplateName()), kOwnLine);
    return record;
  }

  std::unique_ptr<CWriteXML> Writer() const override {
    return std::make_unique<CWritePageDataXML>(page_.get());
  }

 private:
  std::unique_ptr<CPageData> page_;
};

std::unique_ptr<Loaded> Load(const XmlNode& root) {
  auto page = std::make_unique<CPageData>();
  Handed<CReadPageDataXML>(page.get()).InvokeParser(root);
  return std::make_unique<LoadedPage>(std::move(page));
}

constexpr Word kWords[] = {
    {"", "vsmpagedata", "version"},       {"vsmpagedata", "pageTitle", "="},
    {"vsmpagedata", "brand", "="},        {"vsmpagedata", "brandLink", "="},
    {"vsmpagedata", "desc", "="},         {"vsmpagedata", "indexTitle", "="},
    {"vsmpagedata", "contentTitle", "="}, {"vsmpagedata", "rootNodeTitle", "="},
    {"vsmpagedata", "templateName", "="},
};

}  // namespace

const Kind kPageData = {"vsmpagedata", "page data", {}, {.words = kWords}, Load};

}  // namespace vosmere::tool
