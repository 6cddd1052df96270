// The texts with which a published page is presented.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// The texts with which a published page is presented. Setters copy their text; null makes the
/// field null, as it is in a new record. A text that is null is absent, which is not the same as
/// empty. When memory runs out in a setter, the old text stays and LostTexts counts it. A returned
/// text is owned by the record and valid until it is set again. Not thread-safe.
class VOSMERE_API CPageData {
 public:
  CPageData() = default;
  CPageData(const CPageData&) = delete;
  CPageData& operator=(const CPageData&) = delete;
  virtual ~CPageData();

  void SetPageTitle(const WChar* title) { pageTitle_.AssignOrNull(title); }
  WChar* GetPageTitle() const { return pageTitle_.get(); }
  void SetBrand(const WChar* brand) { brand_.AssignOrNull(brand); }
  WChar* GetBrand() const { return brand_.get(); }
  void SetBrandLink(const WChar* link) { brandLink_.AssignOrNull(link); }
  WChar* GetBrandLink() const { return brandLink_.get(); }
  void SetDescription(const WChar* description) { description_.AssignOrNull(description); }
  WChar* GetDescription() const { return description_.get(); }
  void SetIndexTitle(const WChar* title) { indexTitle_.AssignOrNull(title); }
  WChar* GetIndexTitle() const { return indexTitle_.get(); }
  void SetContentTitle(const WChar* title) { contentTitle_.AssignOrNull(title); }
  WChar* GetContentTitle() const { return contentTitle_.get(); }
  void SetRootNodeTitle(const WChar* title) { rootNodeTitle_.AssignOrNull(title); }
  WChar* GetRootNodeTitle() const { return rootNodeTitle_.get(); }
  void SetTemplateName(const WChar* name) { templateName_.AssignOrNull(name); }
  WChar* GetTemplateName() const { return templateName_.get(); }

 private:
  SystemText pageTitle_;
  SystemText brand_;
  SystemText brandLink_;
  SystemText description_;
  SystemText indexTitle_;
  SystemText contentTitle_;
  SystemText rootNodeTitle_;
  SystemText templateName_;
};

}  // namespace vosmere
