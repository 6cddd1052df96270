#include "tests/support/test.h"
#include "tests/support/xml_trees.h"

namespace vosmere::test::plain {

using namespace std::string_literals;

/// Everything that a plain document can have.
const std::string kRich =
    "\xEF\xBB\xBF<?xml version=\"1.0\" encoding='utf-8' standalone = \"yes\" ?>\r\n"
    "<!-- before --><?go there ?>\n"
    "<r xmlns='urn:d' a=\"1\" xmlns:v=\"urn:v\" v:b = 'x&amp;y\t\r\n&#10;\"' v:c=''>\r\n"
    "  t\xC3\xA9xt &lt;&#x1F600;&#38;]] > \xF0\x9F\x98\x80\xE4\xB8\xAD behind more than a word\r"
    "<v:e/><e k='a-long-name.of_its-own' a-long-name.of_its-own='k'></e >"
    "<![CDATA[<a>&amp;]]]]><![CDATA[]]>&gt;<!----><?p?>\r\n"
    "</r>\n<!-- behind -->\n";

TEST(PlainXml, IsWhatTheParserMakesOfIt) {
  const std::string longText(300'001, 'x');
  for (const std::string& document :
       {kRich, "<a/>"s, "<r><a b='" + longText + "'>" + longText + "</a></r>",
        "<xml:a xml:lang='en'/>"s, "<a u:b='undeclared'/>"s, "<a>\r\r\n\n\t</a>"s}) {
    const auto shown = ByTheFastPath(document);
    EXPECT_TRUE(shown) << document.substr(0, 100);
    EXPECT_EQ(shown, ByTheParser(document)) << document;
  }
}

/// Whether the document is plain. Which documents are plain may change, but not what they are read
/// as.
bool IsTaken(const std::string& document) {
  const auto shown = ByTheFastPath(document);
  EXPECT_TRUE(!shown || shown == ByTheParser(document)) << document.substr(0, 1000);
  return shown.has_value();
}

TEST(PlainXml, StaysSoWhateverHappensToADocument) {
  int taken = 0;
  for (std::size_t i = 0; i <= kRich.size(); ++i) {
    taken += IsTaken(kRich.substr(0, i));
    taken += IsTaken(std::string(kRich).erase(i, 1));
    for (const char c : "<>&;#]?!-=:'\" \r\nxa1\x01\x7F\x80\xC3\xFF"s + '\0')
      taken += IsTaken(std::string(kRich).replace(i, (i + c) % 2, 1, c));
  }
  EXPECT_GT(taken, 1000);
}

TEST(PlainXml, HasNamesAndValuesOfEveryLength) {
  std::string document = "<r>";
  for (std::size_t length = 0; length < 36; ++length)
    for (const auto* const special :
         {"", "\n", "\r\n", "\r", "&amp;", "]", "\xC3\xA9", "\xE4\xB8\xAD"})
      for (const std::size_t at : {std::size_t{0}, length / 2, length}) {
        const std::string text = std::string(length, 'x').insert(at, special);
        const std::string name(length + 1, 'n');
        document += "<" + name + " b='" + text + "' " + name + "=\"" + text + "\">" + text + "</" +
                    name + ">";
      }
  EXPECT_TRUE(IsTaken(document + "</r>"));
}

TEST(PlainXml, LeavesToTheParserWhatItDoesNotKnow) {
  for (const auto& row : TestTable("conformance.txt")) IsTaken(row[1]);
  const std::string megabyte(1024 * 1024, ' ');
  std::string nested, attributes, instructions;
  for (int i = 0; i < 1100; ++i) nested += "<a>";
  for (int i = 0; i < 6000; ++i) instructions += "<?name" + std::to_string(i) + "?>";
  for (int i = 0; i < 1100; ++i) attributes += " a" + std::to_string(i) + "=''";
  for (const std::string& document :
       {nested, "<a" + attributes + "/>", "<a>" + instructions + "</a>",
        "<a" + std::string(1000, 'b') + "/>", "<a><b xmlns='" + std::string(2000, 'b') + "'/></a>",
        megabyte + "<a/>", "<a" + megabyte + "/>"})
    IsTaken(document);
}

TEST(PlainXml, HasNoMarkWhereTheEncodingIsKnown) {
  EXPECT_FALSE(ByTheFastPath("\xEF\xBB\xBF<a/>", "UTF-8"));
  EXPECT_FALSE(ByTheParser("\xEF\xBB\xBF<a/>", "UTF-8"));
}

int ColumnOfLastTag(const std::string& document) {
  posix::XmlTree tree;
  tree.keepsPlaces = true;
  posix::MemorySource source(document);
  BuildXmlTree(tree, source, nullptr);
  const auto* const child = tree.arena.root->element.firstChild;
  return tree.places.at(child ? child->next : tree.arena.root).column;
}

TEST(ParsedXml, CountsColumnsFromTheFirstCharacterOfALine) {
  EXPECT_EQ(ColumnOfLastTag("\xEF\xBB\xBF<a/>"), 1);
  EXPECT_EQ(ColumnOfLastTag("<a>x<b/></a>"), 5);
  // The begin of the line is no longer in the buffer.
  EXPECT_EQ(ColumnOfLastTag("<a>" + std::string(100'000, 'x') + "<b/></a>"), 0);
}

TEST(ParsedXml, MayInsertOneDeclarationManyTimes) {
  const std::string inserted = "<!ENTITY a \"&b;\"><!ENTITY b \"1\">";
  std::string document = "<!DOCTYPE a [<!ENTITY % p '" + inserted + "'>";
  for (int i = 0; i < 1000; ++i) document += "%p;";
  EXPECT_EQ(ByTheParser(document + "]><a>&a;</a>"), ByTheParser("<a>1</a>"));
}

TEST(ParsedXml, HasABoundForPrefixesToo) {
  std::string elements, namespaces;
  for (int i = 0; i < 160000; ++i)
    elements += "<p" + std::to_string(i / 400) + ":n" + std::to_string(i % 400) + "/>";
  for (int i = 0; i < 500; ++i) namespaces += " xmlns:p" + std::to_string(i) + "='urn:p'";
  EXPECT_FALSE(ByTheParser("<a>" + elements + "</a>"));
  EXPECT_FALSE(ByTheParser("<a" + namespaces + ">" + std::string(5000, ' ') + "</a>"));
}

}  // namespace vosmere::test::plain
