// Where the data of collections are.
#include "vosmere/collections/colct_profile_document.h"

#include "tools/kind.h"
#include "tools/kinds/items.h"

namespace vosmere::tool {
namespace {

Record ColctContent(const CColctExData& data) {
  Record record{"collection"};
  record.Add("url", TextOf(data.GetColctUrl()));
  record.Add("item", TextOf(data.GetItemID()), kOnLine);
  return record;
}

class LoadedProfile : public Loaded {
 public:
  explicit LoadedProfile(CReadColctExData& reader)
      : entries_(reader.DetachRColctExDataHead()), defaultUrl_(reader.DetachDefaultColctUrl()) {}

  Record Content() const override {
    Record record{"profile"};
    record.Add("default", TextOf(defaultUrl_.get()));
    AddChildren(record, entries_.get(), ColctContent);
    return record;
  }

  std::unique_ptr<CWriteXML> Writer() const override {
    auto writer = std::make_unique<CWriteColctExData>();
    writer->SetRColctExDataHead(entries_.get());
    writer->SetDefaultColctUrl(defaultUrl_.get());
    return writer;
  }

 private:
  ItemList<RColctExData> entries_;
  SystemString defaultUrl_;
};

std::unique_ptr<Loaded> Load(const Source& source) {
  CReadColctExData reader;
  return source(reader) ? std::make_unique<LoadedProfile>(reader) : nullptr;
}

constexpr Word kWords[] = {
    {"", "colctprofile", "version"}, {"colctprofile", "head"}, {"*", "defaultcolct", "="},
    {"*", "colct", "", true},        {"colct", "url", "="},    {"colct", "item", "="},
};

void Inspect(const XmlNode&, std::string_view name, std::string_view scope, const Report& report) {
  InspectNesting(name, scope, report);
}

constexpr Count kCounts[] = {{"collection", "collections"}};

}  // namespace

const Kind kColctProfile = {
    "colctprofile", "collection profile", kCounts, {.words = kWords, .inspect = Inspect}, Load};

}  // namespace vosmere::tool
