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
    AddChildren<ColctContent>(record, entries_.get());
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

std::unique_ptr<Loaded> Load(const XmlNode& root) {
  Handed<CReadColctExData> reader;
  reader.InvokeParser(root);
  return std::make_unique<LoadedProfile>(reader);
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
