// The examples of doc/import.md are the table of these tests.
#include "vosmere/cpp/import.h"

#include <sstream>

#include "tests/support/document.h"
#include "tests/support/test.h"
#include "vosmere/cpp/dates.h"
#include "vosmere/import/internal/entity_names.h"
#include "vosmere/tree/tree_walk.h"

namespace vosmere::test::import {
namespace {

/// An item on one line: "folder/", "page -> address", "feed => address", and what else it has.
std::string LineOf(const RNode* link) {
  auto& item = *link->item;
  std::string line = ToUtf8(item.GetName());
  if (link->type == NT_FOLDER) line += '/';
  if (link->type != NT_FOLDER) {
    const auto& page = static_cast<CUrlNode&>(item);
    std::string address = ToUtf8(page.GetUrl());
    if (link->type == NT_COLCT) std::replace(address.begin(), address.end(), '\\', '/');
    line += (link->type == NT_URL ? " -> " : " => ") + address;
    if (!TextView(page.GetRelationUrl()).empty()) line += ", at " + TextView(page.GetRelationUrl());
    if (!TextView(page.GetAuthor()).empty()) line += ", by " + TextView(page.GetAuthor());
    const CUrlProp* const prop = page.GetUrlProp();
    for (const auto* tag = prop ? prop->GetTagsHead() : nullptr; tag; tag = tag->next)
      line += " #" + ToUtf8(tag->data);
  }
  LONG times[3];
  item.GetNodeStat()->GetStatTime(&times[0], &times[1], &times[2]);
  constexpr const char* kNames[] = {", added ", ", modified ", ", visited "};
  for (int i = 0; i < 3; ++i)
    if (item.GetNodeStat()->GetSetTimes() >> i & 1) line += kNames[i] + std::to_string(times[i]);
  return *item.GetDescription() ? line + ": " + ToUtf8(item.GetDescription()) : line;
}

std::string TextOf(RNode* root) {
  std::string text = LineOf(root) + '\n';
  std::size_t level = 1;
  const auto enter = [&](RNode* link) {
    text += std::string(2 * level++, ' ') + LineOf(link) + '\n';
    return true;
  };
  WalkBelow(root, enter, [&](RNode*) { --level; });
  return text;
}

/// What an import made, or why it failed.
std::string After(const Result<Imported>& imported) {
  if (!imported) return ToString(imported.error()) + '\n';
  if (imported->tree) return TextOf(imported->tree.get());
  CColctNode& colct = *imported->collection;
  RNode* const root = colct.GetLocRNodeRoot();
  SetName(*root->item, colct.GetName());
  const std::string site = ToUtf8(colct.GetRelationUrl());
  return (site.empty() ? "" : "the site is " + site + '\n') + TextOf(root);
}

std::string RepairsOf(const Result<Imported>& imported) {
  std::string text;
  if (imported)
    for (const Repair& repair : imported->repairs) text += ToString(repair) + '\n';
  return text;
}

struct Example {
  std::string name, before, repairs, after;
};

/// "\xHH" is a byte.
std::string Unescaped(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool isByte = text.compare(i, 2, "\\x") == 0;
    bytes += isByte ? static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16)) : text[i];
    if (isByte) i += 3;
  }
  return bytes;
}

std::vector<Example> Examples() {
  std::vector<Example> examples;
  std::istringstream document(ReadBytes(VOSMERE_TEST_DATA "/../../doc/import.md"));
  std::string* block = nullptr;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("### ")) examples.push_back({line.substr(4), {}, {}, {}});
    if (line == "```")
      block = nullptr;
    else if (block)
      *block += line + '\n';
    else if (line == "```before")
      block = &examples.back().before;
    else if (line == "```repairs")
      block = &examples.back().repairs;
    else if (line == "```after")
      block = &examples.back().after;
  }
  return examples;
}

TEST(Import, RepairsWhatTheDocumentShows) {
  const std::vector<Example> examples = Examples();
  EXPECT_GT(examples.size(), 30u);
  for (const Example& example : examples) {
    SCOPED_TRACE(example.name);
    const std::string bytes = Unescaped(example.before.substr(0, example.before.size() - 1));
    const Result<Imported> imported = Import(Bytes(bytes));
    EXPECT_EQ(RepairsOf(imported), example.repairs);
    EXPECT_EQ(After(imported), example.after);
  }
}

TEST(Import, KnowsTheEntitiesOfHtml) {
  std::uint64_t hash = 0;
  for (const importing::NamedEntity& entity : importing::kEntities) {
    for (const char c : entity.name) hash = hash * 31 + static_cast<unsigned char>(c);
    hash = (hash * 31 + entity.character / 256) * 31 + entity.character % 256;
  }
  EXPECT_EQ(hash, 0x6f61e71ab573007cu) << "the same of another program's table";
}

TEST(Import, SaysWhyItFails) {
  const struct {
    std::string document;
    const char* reason;
  } cases[] = {
      {"<feed><title>a & b</title></feed>", "this is 'feed'"},
      {"<opml/>", "there is nothing in the document"},
      {"", ""},
      {"no & markup", ""},
  };
  for (const auto& c : cases) {
    const Result<Imported> imported = Import(Bytes(c.document));
    EXPECT_FALSE(imported) << c.document;
    EXPECT_THAT(imported.error().reason, HasSubstr(c.reason));
    EXPECT_NE(imported.error().reason, "");
  }
  std::string deep = "<opml><body>&";
  for (int i = 0; i < 20000; ++i) deep += "<outline text='a'>";
  EXPECT_EQ(Import(Bytes(deep)).error().fault, DocumentFault::kTooDeep);
  EXPECT_THAT(RepairsOf(Import(Bytes("<!DOCTYPE opml [<!ENTITY e '&bad'>]><opml><body><outline "
                                     "text='a'/></body></opml>"))),
              testing::StartsWith("1:1: not well-formed"));
  EXPECT_THAT(RepairsOf(Import(Bytes("<rss><channel><item><title>&</title><link><![CDATA[data:x]]>"
                                     "</link></item></channel></rss>"))),
              HasSubstr("'data:x' kept"));
  EXPECT_EQ(Import("no/such/file").error().fault, DocumentFault::kCannotOpen);
}

// By the exact readers alone, and with a zero byte at the end after a repair.
TEST(Import, TakesWhatTheExactReadersTakeAsTheyDo) {
  const std::string tree = TestData("collection_tree.opml"), colct = TestData("collection.rss");
  const std::string savedTree = SaveToBytes(*Load<vosmere::Tree>(Bytes(tree)))->bytes;
  const std::string savedColct = SaveToBytes(*Load<Collection>(Bytes(colct)))->bytes;
  for (const std::size_t zeros : {0u, 1u}) {
    const Result<Imported> list = Import(Bytes(tree + std::string(zeros, '\0')));
    const Result<Imported> feed = Import(Bytes(colct + std::string(zeros, '\0')));
    EXPECT_EQ(SaveToBytes(list->tree)->bytes, savedTree);
    EXPECT_EQ(SaveToBytes(feed->collection)->bytes, savedColct);
    EXPECT_EQ(list->repairs.size() + feed->repairs.size(), 2 * zeros);
  }
  const auto outline = [](const std::string& attributes) {
    return After(Import(Bytes("<opml><body><outline text='a'" + attributes + "/></body></opml>")));
  };
  for (const char* const more : {" type='link'", " x:y='z'"})
    EXPECT_EQ(outline(more), outline("")) << more;  // without an address a link is no page
  std::string own =
      "<!-- <!DOCTYPE --><!DOCTYPE rss [<!-- ]> --><!ENTITY co \"AT&#38;#38;T &quot;x&quot; ]>\">"
      "<!ENTITY l '<link>http://e/?a&#38;amp;b</link>'><!ENTITY n \"<![CDATA[a &#38; &co;]]>\">"
      "<!ENTITY co '2'>]><rss version='2.0'><channel><title>'&co;'</title><!-- &n; --><item>&l;"
      "<title>&co;&co;</title><description>&n;<![CDATA[&co;]]></description></item></channel></"
      "rss>";
  const std::string exact = After(Import(Bytes(own)));
  EXPECT_EQ(After(Import(Bytes(own += '\0'))), exact);
}

/// A tree with everything that a bookmark file holds.
vosmere::Tree Bookmarks(const char* name) {
  vosmere::Tree tree = NewTree(name);
  RNode* const news = Add<CFolderNode>(tree, name)->GetRNode();
  SetDescription(*news->item, name);
  CUrlNode& page = *Add<CUrlNode>(news, name, std::string("http://a.example/?") + name);
  page.GetNodeStat()->SetStatTime(1, -2, 2147483647, 7);
  AddTag(page, "two words");
  AddTag(page, "b&c");
  Add<CFolderNode>(news, "");
  Add<CColctNode>(tree, name, "http:\\\\b.example\\feed")
      ->SetRelationUrl(test::W("http://b.example/"));
  return tree;
}

// What the plain writer writes without escaping comes back, and so do pages and bookmark files.
TEST(Import, BringsBackWhatWasSaved) {
  for (const char* const name :
       {"a", "Tom & Jerry", "a < b > c", "the \"best\" of", "\"quoted\"", "AT&T", "1<2",
        "it's 'so'", "a \"b\"<c", "a \"b=c\" d", "日本語 😀"}) {
    SCOPED_TRACE(name);
    const vosmere::Tree tree = Bookmarks(name);
    const std::string whole = TextOf(tree.get());
    const Result<SavedBytes> html = BookmarksToBytes(tree);
    EXPECT_TRUE(html->losses.empty());
    EXPECT_EQ(After(Import(Bytes(html->bytes))), whole);
    SaveOptions options;
    options.pages = true;
    CUrlProp::DeleteTagsList(
        As<CUrlNode>(tree->firstChild->firstChild)->GetUrlProp()->DetachTagsHead());
    const Result<SavedBytes> opml = SaveToBytes(tree, options);
    EXPECT_THAT(After(Import(Bytes(opml->bytes))), HasSubstr(name));
    const TreePtr plain = test::Tree("root(f())");
    plain["f"]->item->SetName(W(std::string(name)));
    const Result<Imported> imported = Import(Bytes(SavedOpml(plain)));
    EXPECT_EQ(ToUtf8(imported->tree->firstChild->item->GetName()), name);
  }
}

// Every pattern would take minutes if it took quadratic time.
TEST(Import, HostileDocumentsTakeLinearTime) {
  constexpr std::size_t kBytes = 50 * 1000;
  for (const char* const pattern : {"<a \"",
                                    "<a b=\"",
                                    "<a b='\"",
                                    "<!--",
                                    "<?",
                                    "<![CDATA[",
                                    "<!DOCTYPE [",
                                    "&a;",
                                    "&",
                                    "&#",
                                    "<a>",
                                    "<a></b>",
                                    "<dc:date>",
                                    "<item><a>",
                                    "<outline text=\"> ",
                                    "<outline text=\" \" a\">",
                                    "</",
                                    "<outline a",
                                    "< ",
                                    "x:",
                                    "<x:y z:w=''>",
                                    "\xE9\xC3\xA9",
                                    "<DL>",
                                    "<H3>",
                                    "<A HREF=x>",
                                    "<HR>"})
    for (const char* const begin :
         {"<!DOCTYPE o [<!ENTITY a '<!--'>]><opml><body>", "<!DOCTYPE NETSCAPE-Bookmark-file-1>"}) {
      std::string document = begin;
      while (document.size() < kBytes) document += pattern;
      const Result<Imported> imported = Import(Bytes(document));
      EXPECT_LE(imported ? imported->repairs.size() : 0, 10000u) << pattern;
    }
}

/// The document with an entity "a" that expands to 8 GiB.
std::string WithBomb(const std::string& document) {
  std::string declarations = "<!ENTITY k '8 bytes.'>";
  for (char c = 'a'; c < 'k'; ++c) {
    declarations += std::string("<!ENTITY ") + c + " '";
    for (int i = 0; i < 8; ++i) declarations += std::string("&") + static_cast<char>(c + 1) + ';';
    declarations += "'>";
  }
  return "<!DOCTYPE opml [" + declarations + "]>" + document;
}

TEST(Import, BoundsWhatItKeeps) {
  std::string many = "<opml><body><outline text='";
  for (int i = 0; i < 10003; ++i) many += '&';
  const Result<Imported> ampersands = Import(Bytes(many + "'/></body></opml>"));
  EXPECT_EQ(ampersands->repairs.size(), 10000u);
  EXPECT_EQ(ampersands->moreRepairs, 3u);

  std::string wide = "<opml><body><outline text='a' type='link' url='http://" +
                     std::string(CUrlNode::kTextLimit, 'a') + "'";
  for (int i = 0; i < 200; ++i) wide += " a" + std::to_string(i) + "=''";
  const std::string repairs = RepairsOf(Import(Bytes(wide + "/>")));
  EXPECT_THAT(repairs, HasSubstr("an address that is too long: 'http://aaa"));
  EXPECT_THAT(repairs, HasSubstr("too many attributes: 'a199' left out"));
  std::string emoji = "<DL><DT><A HREF=x";
  for (int i = 1; i < CUrlNode::kTextLimit / 2; ++i) emoji += "\xF0\x9F\x98\x80";
  EXPECT_EQ(RepairsOf(Import(Bytes(emoji + ">a</A></DL>"))), "");
  EXPECT_THAT(RepairsOf(Import(Bytes(emoji + "yy>a</A></DL>"))), HasSubstr("too long"));

  std::string tags = "'", categories = "<rss><channel><item>";
  for (int i = 0; i < 258; ++i) {
    tags += 't' + std::to_string(i) + ',';
    categories += "<category>t" + std::to_string(i) + "</category>";
  }
  EXPECT_EQ(RepairsOf(Import(Bytes("<DL><DT><A HREF=x TAGS=" + tags + "'>a</A></DL>"))),
            "1:9: too many tags: 't256,t257,' left out\n");
  EXPECT_EQ(RepairsOf(Import(Bytes(categories + "</item></channel></rss>"))),
            "1:6321: too many tags: 't256' left out\n1:6346: too many tags: 't257' left out\n");
  const Result<Imported> bomb =
      Import(Bytes(WithBomb("<opml><body><outline text='&a; &'/></body></opml>")));
  EXPECT_THAT(RepairsOf(bomb), HasSubstr("an entity that XML does not know: '&a;' became"));

  std::string deep = "<DL>";
  for (int i = 0; i < 3000; ++i) deep += "<H3>a</H3><DL>";
  const Result<Imported> folders = Import(Bytes(deep));
  EXPECT_THAT(RepairsOf(folders), HasSubstr("a folder that is nested too deeply: '<H3>' kept"));
  EXPECT_TRUE(SaveToBytes(folders->tree));
}

TEST(Import, SurvivesWantOfMemory) {
  for (const char* const document :
       {"<opml><body><outline text=a&b xmlurl='x'/><outline text='c' url='y'/>",
        "<DL><DT><A HREF='x' TAGS='a,b'>a</A><DD>b<DT><H3>c</H3><DL>"}) {
    const auto make = [&] {
      ImportedItems items;
      DocumentError error;
      const std::string_view bytes = document;
      ImportDocument(bytes.data(), bytes.size(), &items, nullptr, nullptr, &error);
      return items.tree;
    };
    DeleteTree(make());  // what the system allocates once
    ExpectNullAtEachFailure(make, DeleteTree);
    // The DOM of Windows does not tell that from a malformed document, which is then repaired.
    if (kSystemStringsFail) ExpectNullAtEachFailure(make, DeleteTree, Failures::kOne);
  }
}

}  // namespace
}  // namespace vosmere::test::import
