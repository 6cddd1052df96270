#include "vosmere/tags/tags_document.h"

#include <gtest/gtest.h>

#include "tests/support/document.h"
#include "tests/support/row.h"

namespace vosmere::test {
namespace {

void AddGroup(CTagStore& store, const Wide& name, std::initializer_list<int> counts) {
  CTagGroup* const group = CTagStore::CreateTagGroup();
  group->SetName(name);
  store.AddTagGroup(group);
  for (const int count : counts) {
    CTagItem* const tag = CTagStore::CreateTagItem();
    tag->SetName(W("t" + std::to_string(count)));
    tag->SetCount(count);
    group->AddTagItem(tag);
  }
}

std::string SavedTags(const CTagStore& store) {
  CWriteTagsXML writer;
  writer.SetTagGroupHead(store.GetTagGroupHead());
  return Saved(writer);
}

/// Groups with their tags and counts.
std::string Show(const CTagStore& store) {
  return Row(store.GetTagGroupHead(), [](const CTagStore::TagGroupList* group) {
    return Utf8(group->data->GetName()) + "(" +
           Row(group->data->GetTagItemHead(),
               [](const CTagGroup::TagItemList* tag) {
                 return Utf8(tag->data->GetName()) + "=" + std::to_string(tag->data->GetCount());
               }) +
           ")";
  });
}

std::string ReadTags(const std::string& document) {
  CReadTagsXML reader;
  if (!Load(reader, document)) return "not loaded";
  CTagStore store;
  store.SetRTagGroupHead(reader.DetachTagGroupHead());
  return Show(store);
}

TEST(Tags, AreWrittenByteForByteAndReadBack) {
  CTagStore store;
  AddGroup(store, W("R&D \"новости\""), {1, 2, 0, -5, 20000000});
  AddGroup(store, nullptr, {});
  AddGroup(store, W(""), {1});
  EXPECT_EQ(SavedTags(store), TestData("tags.xml"));
  EXPECT_EQ(ReadTags(TestData("tags.xml")),
            "R&D \"новости\"(t1=1 t2=2 t0=0 t-5=0 t20000000=10000000) (null)() (null)(t1=1)");
}

TEST(Tags, AnEmptyStoreIsWrittenAsTheRootElement) {
  EXPECT_EQ(SavedTags(CTagStore()),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<vsmtags version=\"1.0\">\r\n</vsmtags>");
}

TEST(Tags, ElementsCountDirectlyInTheirParents) {
  const struct {
    const char *content, *shown;
  } cases[] = {
      {"<tag name='a'/><x><group/></x><Group/>", ""},
      {"<group name='g'><x><tag/></x><group><tag/></group><tag>b</tag></group>", "g((null)=1)"},
      {"<group><tag count='-20000000x' name=''/><tag count=''/></group>",
       "(null)(=-20000000 (null)=0)"},
      {"<group Name='g'><tag Count='2' name='a'/></group><group name=''/>", "(null)(a=1) ()"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(ReadTags("<vsmtags>" + std::string(c.content) + "</vsmtags>"), c.shown) << c.content;
}

}  // namespace
}  // namespace vosmere::test
