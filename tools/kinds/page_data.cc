// How a published page presents itself.
#include "vosmere/pages/page_data_document.h"

#include "tools/kind.h"
#include "tools/kinds/items.h"

namespace vosmere::tool {
namespace {

class LoadedPage : public Loaded {
 public:
  explicit LoadedPage(std::unique_ptr<CPageData> page) : page_(std::move(page)) {}

  Record Content() const override {
    Record record{"page"};
    record.Add("pageTitle", TextOf(page_->GetPageTitle()));
    record.Add("brand", TextOf(page_->GetBrand()), kOwnLine);
    record.Add("brandLink", TextOf(page_->GetBrandLink()), kOwnLine);
    record.Add("description", TextOf(page_->GetDescription()), kOwnLine);
    record.Add("indexTitle", TextOf(page_->GetIndexTitle()), kOwnLine);
    record.Add("contentTitle", TextOf(page_->GetContentTitle()), kOwnLine);
    record.Add("rootNodeTitle", TextOf(page_->GetRootNodeTitle()), kOwnLine);
    record.Add("templateName", TextOf(page_->GetTemplateName()), kOwnLine);
    return record;
  }

  std::unique_ptr<CWriteXML> Writer() const override {
    return std::make_unique<CWritePageDataXML>(page_.get());
  }

 private:
  std::unique_ptr<CPageData> page_;
};

std::unique_ptr<Loaded> Load(const Source& source) {
  auto page = std::make_unique<CPageData>();
  CReadPageDataXML reader(page.get());
  return source(reader) ? std::make_unique<LoadedPage>(std::move(page)) : nullptr;
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
