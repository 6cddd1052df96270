#include "vosmere/nodes/url_node.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/tree.h"
#include "tests/support/wide.h"
#include "vosmere/nodes/properties.h"

namespace vosmere::test {
namespace {

using Tags = CUrlProp::TagList;

/// Cuts up a copy of `text` and frees the tags when it goes.
class OwnedTags {
 public:
  explicit OwnedTags(const std::string& text) : cut_(W(text)) {
    head = CUrlProp::GenerateRBstrItemList(const_cast<WChar*>(cut_.get()));
  }
  ~OwnedTags() { CUrlProp::DeleteTagsList(head); }
  OwnedTags(const OwnedTags&) = delete;
  OwnedTags& operator=(const OwnedTags&) = delete;

  Tags* release() { return std::exchange(head, nullptr); }

  Tags* head;

 private:
  Wide cut_;
};

/// The tags with bars between them, or what is wrong with their chain.
std::string Joined(const Tags* head) {
  std::string joined;
  for (const Tags* cell = head; cell; cell = cell->next) {
    joined += (cell == head ? "" : "|") + Utf8(cell->data);
    if (cell->next && cell->next->prev != cell) return joined + " BROKEN: prev";
    if (!cell->next && head->prev != cell) return joined + " BROKEN: last";
  }
  return joined;
}

TEST(UrlNode, StartsAsAPlainAddressAtABlankPage) {
  const auto page = New<CUrlNode>();
  EXPECT_EQ(Utf8(page->GetUrl()), "about:blank");
  EXPECT_EQ(SysStringLen(page->GetUrl()), 11u);
  EXPECT_EQ(page->GetAuthor(), nullptr);
  EXPECT_EQ(page->GetRelationUrl(), nullptr);
  EXPECT_EQ(page->GetItemType(), IT_URL);
  EXPECT_TRUE(page->HasUrl());
}

TEST(UrlNode, OnlyAPlainAddressHasAnUrl) {
  const auto page = New<CUrlNode>();
  for (const auto type : {IT_NOTE, IT_WEBPAGE, IT_FILE}) {
    page->SetItemType(type);
    EXPECT_FALSE(page->HasUrl());
  }
  page->SetItemType(IT_URL);
  page->SetUrl(W(""));
  EXPECT_TRUE(page->HasUrl());
  page->SetUrl(nullptr);
  EXPECT_FALSE(page->HasUrl());
  EXPECT_EQ(Copy(page)->GetUrl(), nullptr);
}

TEST(UrlNode, OverLongUrlIsIgnoredButOverLongAuthorClears) {
  const auto page = New<CUrlNode>();
  const auto setAll = [&page](const Wide& text) {
    page->SetUrl(text);
    page->SetAuthor(text);
    page->SetRelationUrl(text);
  };
  const std::string longest(2084, 'x');
  setAll(Repeated(2084));
  EXPECT_EQ(Utf8(page->GetUrl()), longest);
  EXPECT_EQ(Utf8(page->GetAuthor()), longest);
  EXPECT_EQ(Utf8(page->GetRelationUrl()), longest);
  setAll(Repeated(2085));
  EXPECT_EQ(Utf8(page->GetUrl()), longest);
  EXPECT_EQ(page->GetAuthor(), nullptr);
  EXPECT_EQ(page->GetRelationUrl(), nullptr);
}

TEST(UrlNode, NullClearsAuthorAndRelation) {
  const auto page = New<CUrlNode>();
  page->SetAuthor(W("a"));
  page->SetRelationUrl(W("r"));
  page->SetAuthor(nullptr);
  page->SetRelationUrl(nullptr);
  EXPECT_EQ(page->GetAuthor(), nullptr);
  EXPECT_EQ(page->GetRelationUrl(), nullptr);
}

TEST(UrlNode, CopyHasItsOwnTextsAndTags) {
  auto source = New<CUrlNode>();
  source->SetName(W("n"));
  source->SetUrl(W("u"));
  source->SetAuthor(W("a"));
  source->SetRelationUrl(W("r"));
  source->SetItemType(IT_FILE);
  CUrlProp* const prop = source->GetUrlProp();
  EXPECT_EQ(source->GetUrlProp(), prop);
  prop->SetFileType(FT_XLS);
  prop->SetFileExtension(W("xls"));
  prop->SetTagsList(OwnedTags("News sport").release());
  prop->SetNeedSaveKeyWords(true);
  const TreePtr colct(NewLink(NT_COLCT, "c"));
  prop->SetRefColctRNode(colct);

  const auto copy = Copy(source);
  EXPECT_NE(copy->GetUrlProp(), prop);
  CUrlProp* const kept = copy->GetUrlProp();
  source.reset();
  EXPECT_EQ(Utf8(copy->GetName()), "n");
  EXPECT_EQ(Utf8(copy->GetUrl()), "u");
  EXPECT_EQ(Utf8(copy->GetAuthor()), "a");
  EXPECT_EQ(Utf8(copy->GetRelationUrl()), "r");
  EXPECT_EQ(copy->GetItemType(), IT_FILE);
  EXPECT_EQ(kept->GetFileType(), FT_XLS);
  EXPECT_EQ(Utf8(kept->GetFileExtension()), "xls");
  EXPECT_EQ(Joined(kept->GetTagsHead()), "News|sport");
  EXPECT_FALSE(kept->DoNeedSaveKeyWords()) << "the need to save does not carry over";
  EXPECT_EQ(kept->GetRefColctRNode(), nullptr) << "nor does the reference";
}

TEST(UrlProp, StartsEmptyAndNullClearsTheExtension) {
  CUrlProp prop;
  EXPECT_EQ(prop.GetFileType(), FT_OTHER);
  EXPECT_EQ(prop.GetFileExtension(), nullptr);
  EXPECT_EQ(prop.GetTagsHead(), nullptr);
  EXPECT_EQ(prop.GetRefColctRNode(), nullptr);
  EXPECT_FALSE(prop.DoNeedSaveKeyWords());
  prop.SetFileExtension(W("pdf"));
  EXPECT_EQ(Utf8(prop.GetFileExtension()), "pdf");
  prop.SetFileExtension(nullptr);
  EXPECT_EQ(prop.GetFileExtension(), nullptr);
}

TEST(UrlProp, SplitsTagsAndLeavesOutRepetitions) {
  struct {
    const char* text;
    const char* tags;
  } const cases[] = {{"", ""},
                     {" ,;\t\r\n", ""},
                     {"News, news;;sport\tNEWS", "News|sport"},
                     {"a", "a"},
                     {";a", "a"},
                     {"a ", "a"},
                     {"a\rb\nc,d;e f\tg", "a|b|c|d|e|f|g"},
                     {"É é", "É|é"},
                     {"a.b/c a", "a.b/c|a"}};
  for (const auto& c : cases) EXPECT_EQ(Joined(OwnedTags(c.text).head), c.tags) << c.text;
  EXPECT_EQ(CUrlProp::GenerateRBstrItemList(nullptr), nullptr);
}

TEST(UrlProp, HasATagInAnyLetterCase) {
  CUrlProp prop;
  EXPECT_FALSE(prop.HasTag(W("sport")));
  prop.SetTagsList(OwnedTags("News sport").release());
  EXPECT_TRUE(prop.HasTag(W("SPORT")));
  EXPECT_FALSE(prop.HasTag(W("spor")));
  EXPECT_FALSE(prop.HasTag(W("sports")));
  EXPECT_FALSE(prop.HasTag(nullptr));
}

TEST(UrlProp, ADetachedChainBelongsToTheCaller) {
  Tags* tags = nullptr;
  {
    CUrlProp prop;
    prop.SetTagsList(OwnedTags("a b").release());
    tags = prop.DetachTagsHead();
    EXPECT_EQ(prop.GetTagsHead(), nullptr);
  }
  EXPECT_EQ(Joined(tags), "a|b");
  CUrlProp::DeleteTagsList(tags);
}

TEST(UrlProp, MakesAndFreesOneTag) {
  Tags* const tag = CUrlProp::CreateRBstrItem(W("tag"));
  EXPECT_EQ(Joined(tag), "tag");
  CUrlProp::DeleteOneRBstrItem(tag);
  CUrlProp::DeleteOneRBstrItem(nullptr);
  CUrlProp::DeleteTagsList(nullptr);
}

TEST(Properties, IsEmptyLooksAtTheDescriptionOnceThereIsANameOrAddress) {
  const Wide null(nullptr);
  struct {
    Wide name, description, url;
    bool empty;
  } const cases[] = {{null, W(""), null, true},       {null, W("text"), null, true},
                     {W("n"), W(""), null, false},    {W("n"), null, null, false},
                     {W("n"), W("text"), null, true}, {null, W("text"), W("u"), true},
                     {W(""), W(""), null, false},     {null, W(""), W("u"), false}};
  for (const auto& c : cases) {
    CProperties properties;
    properties.SetName(c.name);
    properties.SetDescription(c.description);
    properties.SetUrl(c.url);
    EXPECT_EQ(properties.IsEmpty(), c.empty)
        << Utf8(c.name) << "/" << Utf8(c.description) << "/" << Utf8(c.url);
  }
}

TEST(Properties, NullClearsEveryTextTheDescriptionIncluded) {
  CProperties properties;
  EXPECT_EQ(properties.GetName(), nullptr);
  EXPECT_EQ(Utf8(properties.GetDescription()), "");
  EXPECT_EQ(properties.GetUrl(), nullptr);
  properties.SetDescription(nullptr);
  EXPECT_EQ(properties.GetDescription(), nullptr);
}

}  // namespace
}  // namespace vosmere::test
