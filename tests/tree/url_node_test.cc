#include "vosmere/tree/url_node.h"

#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "vosmere/tree/properties.h"

namespace vosmere::test::url_node {

using Tags = CUrlProp::TagList;

/// The caller owns them.
Tags* MakeTags(const std::string& text) {
  const Wide cut = W(text);
  return CUrlProp::GenerateRBstrItemList(const_cast<WChar*>(cut.get()));
}

std::string Shown(const Tags* head) {
  return Row(head, [](const Tags* cell) { return Utf8(cell->data); });
}

TEST(UrlNode, OnlyAPlainAddressHasAnUrl) {
  const auto page = New<CUrlNode>();
  EXPECT_EQ(Utf8(page->GetUrl()), "about:blank");
  EXPECT_TRUE(page->HasUrl());
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
  setAll(W(longest));
  EXPECT_EQ(SysStringLen(page->GetUrl()), 2084u);
  EXPECT_EQ(Utf8(page->GetAuthor()), longest);
  EXPECT_EQ(Utf8(page->GetRelationUrl()), longest);
  setAll(Repeated(2085));
  EXPECT_EQ(Utf8(page->GetUrl()), longest);
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
  prop->SetFileType(FT_XLS);
  prop->SetFileExtension(W("xls"));
  prop->SetTagsList(MakeTags("News sport"));
  prop->SetNeedSaveKeyWords(true);
  const TreePtr colct(NewLink(NT_COLCT, "c"));
  prop->SetRefColctRNode(colct);

  const auto copy = Copy(source);
  CUrlProp* const kept = copy->GetUrlProp();
  source.reset();
  std::string texts;
  for (const WChar* text : {copy->GetName(), copy->GetUrl(), copy->GetAuthor(),
                            copy->GetRelationUrl(), kept->GetFileExtension()})
    texts += Utf8(text) + ' ';
  EXPECT_EQ(texts, "n u a r xls ");
  EXPECT_EQ(copy->GetItemType(), IT_FILE);
  EXPECT_EQ(kept->GetFileType(), FT_XLS);
  EXPECT_EQ(Shown(kept->GetTagsHead()), "News sport");
  EXPECT_FALSE(kept->DoNeedSaveKeyWords()) << "the need to save does not carry over";
  EXPECT_EQ(kept->GetRefColctRNode(), nullptr) << "nor does the reference";
}

TEST(UrlProp, SplitsTagsAndLeavesOutRepetitions) {
  struct {
    const char *text, *tags;
  } const cases[] = {{"", ""},
                     {" ,;\t\r\n", ""},
                     {"News, news;;sport\tNEWS", "News sport"},
                     {";a ", "a"},
                     {"a\rb\nc,d;e f\tg", "a b c d e f g"},
                     {"É é", "É é"},
                     {"a.b/c a", "a.b/c a"}};
  for (const auto& c : cases) {
    Tags* const tags = MakeTags(c.text);
    EXPECT_EQ(Shown(tags), c.tags) << c.text;
    CUrlProp::DeleteTagsList(tags);
  }
  EXPECT_EQ(CUrlProp::GenerateRBstrItemList(nullptr), nullptr);
}

TEST(UrlProp, HasATagInAnyLetterCaseUntilTheyAreDetached) {
  Tags* tags = nullptr;
  {
    CUrlProp prop;
    prop.SetTagsList(MakeTags("News sport"));
    EXPECT_TRUE(prop.HasTag(W("SPORT")));
    for (const Wide& other : {W("spor"), W("sports"), Wide(nullptr)})
      EXPECT_FALSE(prop.HasTag(other)) << Utf8(other);
    tags = prop.DetachTagsHead();
    EXPECT_FALSE(prop.HasTag(W("sport")));
  }
  EXPECT_EQ(Shown(tags), "News sport");
  CUrlProp::DeleteTagsList(tags);
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
    EXPECT_EQ(Utf8(properties.GetDescription()), "");
    properties.SetName(c.name);
    properties.SetDescription(c.description);
    properties.SetUrl(c.url);
    EXPECT_EQ(Utf8(properties.GetDescription()), Utf8(c.description)) << "null too";
    EXPECT_EQ(properties.IsEmpty(), c.empty)
        << Utf8(c.name) << "/" << Utf8(c.description) << "/" << Utf8(c.url);
  }
}

}  // namespace vosmere::test::url_node
