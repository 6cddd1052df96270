#include "vosmere/platform/internal/xml_document.h"

#include <chrono>
#include <functional>

#include "tests/support/platform.h"
#include "tests/support/test.h"

namespace vosmere::test::xml_document {

constexpr int kEntityReference = 5;

std::string Shown(const XmlText& text) {
  return Utf8(text.c_str());
}

std::string Shown(const XmlNode& node);

std::string ShownChildren(const XmlNode& node) {
  std::string all;
  for (XmlNode child = node.FirstChild(); child; child = child.NextSibling()) all += Shown(child);
  return all;
}

/// A node as markup, so that its kind can be seen.
std::string Shown(const XmlNode& node) {
  const std::string name = Shown(node.Name());
  switch (node.Type()) {
    case kXmlText: return Shown(node.Text());
    case kXmlCData: return "[" + Shown(node.Text()) + "]";
    case kXmlComment: return "{" + Shown(node.Text()) + "}";
    case kXmlProcessingInstruction: return "?" + name + "=" + Shown(node.Text()) + "?";
    case kEntityReference: return ShownChildren(node);
    default: break;
  }
  std::string all = "<" + name;
  for (XmlAttributes attributes(node); attributes.Next();) {
    EXPECT_TRUE(attributes.HasTextValue());
    all += " " + Shown(attributes.Name()) + "=" + Shown(attributes.Value());
  }
  return all + ">" + ShownChildren(node) + "</>";
}

/// The result of loading: the document as text, or the error.
struct Outcome {
  std::string shown;
  DocumentError error;
};

Outcome After(const std::function<void(XmlDocument&)>& load) {
  try {
    XmlDocument document;
    load(document);
    return {Shown(document.Root()), {}};
  } catch (const DocumentFailure& failure) {
    EXPECT_NE(failure.error.reason[0], 0);
    return {"", failure.error};
  }
}

Outcome FromBytes(const std::string& bytes) {
  return After(
      [&](auto& document) { document.LoadBytes(bytes.data(), static_cast<int>(bytes.size())); });
}

Outcome FromText(const std::string& text) {
  return After([&](XmlDocument& document) { document.LoadText(W(text)); });
}

Outcome FromFile(const std::string& bytes) {
  const TempFolder folder;
  WriteBytes(folder / "file", bytes);
  return After([&](XmlDocument& document) { document.LoadFile(W(folder / "file")); });
}

/// As big-endian UTF-16 with a byte-order mark.
Outcome FromUtf16(const std::string& text) {
  const Wide wide = W("\xEF\xBB\xBF" + text);
  std::string bytes;
  for (std::size_t i = 0; i < wide.size(); ++i) {
    bytes += static_cast<char>(wide.get()[i] >> 8);
    bytes += static_cast<char>(wide.get()[i] & 0xFF);
  }
  return FromBytes(bytes);
}

/// The fault of a document, which must be the same from bytes, text and UTF-16.
DocumentFault FaultOf(const std::string& document) {
  const DocumentFault fault = FromBytes(document).error.fault;
  EXPECT_EQ(FromText(document).error.fault, fault);
  EXPECT_EQ(FromUtf16(document).error.fault, fault);
  return fault;
}

std::string Times(int count, const std::string& text) {
  std::string all;
  for (int i = 0; i < count; ++i) all += text;
  return all;
}

std::string WithDoctype(const std::string& declarations, const std::string& content) {
  return "<?xml version='1.0'?><!-- <a> --><!DOCTYPE a [" + declarations + "]>\n<a>" + content +
         "</a>";
}

TEST(XmlDocument, KeepsEveryNodeInOrderAndEveryPrefix) {
  const std::string document =
      "<?xml version='1.0'?>\n<!--before--><r xmlns:p='u'><p:a z='1' b=' 2&#9;&amp;' p:a=''> "
      "t\r\n<p:b/>"
      "<![CDATA[<&]]><!-- c --><?p  i ?>\n<c xml:lang='d'/></p:a></r><!--after-->";
  const std::string shown =
      "<r xmlns:p=u><p:a z=1 b= 2\t& p:a=> t\n<p:b></>[<&]{ c }?p=i ?\n<c xml:lang=d></></></>";
  for (const auto from : {FromBytes, FromText, FromFile, FromUtf16})
    EXPECT_EQ(from(document).shown, shown);
  XmlDocument loaded;
  EXPECT_FALSE(loaded.Root());
  loaded.LoadText(W("<a>1<b>2<![CDATA[3]]></b><!--no--><?no no?>&#52;</a>"));
  EXPECT_EQ(Shown(loaded.Root().Text()), "1234") << "all text inside";
}

TEST(XmlDocument, TextsOfAnyLengthMoveWithTheirObject) {
  for (const std::size_t length : {0, 1, 17, 249, 250, 5000}) {
    const std::string text(length, 'x');
    XmlDocument document;
    document.LoadText(W("<a>" + text + "</a>"));
    XmlText first = document.Root().Text(), second(std::move(first)), third;
    third = std::move(second);
    EXPECT_EQ(Shown(third), text);
  }
}

TEST(XmlDocument, ExpandsWhatItDeclares) {
  const std::string declarations =
      "<!ENTITY e 'x&#38;amp;'><!ENTITY f '<i k=\"&e;\"/>'><!ENTITY g '&f;&f;'>"
      "<!ENTITY unused SYSTEM 'nowhere'>";
  EXPECT_EQ(FromBytes(WithDoctype(declarations, "1&e;2<b k='&e;'/>")).shown,
            "<a>1x&2<b k=x&></></>");
  EXPECT_EQ(FromText(WithDoctype(declarations, "&g;-&f;")).shown,
            "<a><i k=x&></><i k=x&></>-<i k=x&></></>");
  EXPECT_EQ(
      FromBytes(WithDoctype("<!ENTITY e SYSTEM 'x'>", "<![CDATA[&e;]]><!--&e;--><?p &e;?>")).shown,
      "<a>[&e;]{&e;}?p=&e;?</>");
}

TEST(XmlDocument, NamingWhatIsOutsideIsNoHarm) {
  const std::string documents[] = {
      "<!DOCTYPE a SYSTEM 'no-such.dtd'><a>1</a>",
      "<!DOCTYPE a PUBLIC '-//x//y//EN' 'http://localhost:1/x.dtd' [ ]><a>1</a>",
      "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.txt'><!ENTITY % p SYSTEM 'p.dtd'>]><a>1</a>",
      "<!DOCTYPE a [<!ENTITY % p SYSTEM 'p.dtd'> %p; <!ENTITY e 'x'>]><a>1</a>",
      "<!DOCTYPE a [<!ELEMENT a (#PCDATA|b)*><!-- ]> &e; --><?p ]> ?>"
      "<!NOTATION n SYSTEM ']>'><!ATTLIST a k (x|y) #IMPLIED l NOTATION (n) #IMPLIED>]><a>1</a>"};
  for (const std::string& document : documents)
    EXPECT_EQ(FromBytes(document).shown, "<a>1</>") << document;
}

TEST(XmlDocument, RefusesTextThatNeedsWhatIsOutside) {
  const TempFolder folder;
  WriteBytes(folder / "secret", "SECRET");
  const std::string outside = "SYSTEM '" + (folder / "secret").generic_string() + "'";
  const std::string documents[] = {
      "<!DOCTYPE a [<!ENTITY e " + outside + ">]><a>1&e;</a>",
      "<!DOCTYPE a [<!ENTITY e " + outside + "><!ENTITY f '&e;'>]><a>1&f;</a>",
      "<!DOCTYPE a [<!ENTITY e " + outside + ">]><a k='&e;'>1</a>",
      "<!DOCTYPE a " + outside + "><a>&e;</a>",
      "<!DOCTYPE a [<!ENTITY % p " + outside + ">%p;]><a>&e;</a>"};
  for (const std::string& document : documents)
    EXPECT_EQ(FaultOf(document), DocumentFault::kRefersOutside) << document;
  EXPECT_EQ(FromFile(documents[0]).error.fault, DocumentFault::kRefersOutside);
}

/// Entities, each of which uses the one below it `width` times; the lowest is a blank.
std::string Bomb(int levels, int width, const std::string& name = "e",
                 const std::string& use = "&e", bool insideOut = false) {
  std::string declarations = "<!ENTITY " + name + "0 ' '>";
  for (int i = 1; i < levels; ++i) {
    const std::string outer = "<!ENTITY " + name + std::to_string(i) + " '" +
                              Times(width, use + std::to_string(i - 1) + ";") + "'>";
    declarations = insideOut ? outer + declarations : declarations + outer;
  }
  return declarations;
}

std::string Values(int count) {
  std::string values = "(v0";
  for (int i = 1; i < count; ++i) values += "|v" + std::to_string(i);
  return values + ") \"v1\"";
}

TEST(XmlDocument, RefusesQuicklyWhatExpandsOutOfProportion) {
  const std::string large(60000, 'x');
  std::string attributes;
  for (int i = 0; i < 1001; ++i) attributes += " k" + std::to_string(i) + " CDATA 'v'";
  std::string many;
  for (int i = 0; i < 50000; ++i) many += " k" + std::to_string(i) + "=''";
  const struct {
    const char* what;
    std::string document;
  } cases[] = {
      {"exponential", WithDoctype(Bomb(10, 10), "&e9;")},
      {"in an attribute", WithDoctype(Bomb(10, 10), "<b k='&e9;'/>")},
      {"quadratic", WithDoctype("<!ENTITY e '" + large + "'>", Times(20000, "&e;"))},
      {"one long literal", WithDoctype("<!ENTITY e '" + large + large + "'>", "&e;")},
      {"nesting", WithDoctype(Bomb(22, 1), "&e21;")},
      {"inside out", WithDoctype(Bomb(9, 10, "e", "&e", true), "&e8;")},
      {"in the declaration", WithDoctype(Bomb(5, 10, "% p", "&#37;p") + "%p4;", "")},
      {"nesting there", WithDoctype(Bomb(22, 1, "% p", "&#37;p") + "%p21;", "")},
      {"one declaration, many times",
       WithDoctype(
           "<!ENTITY % p '<!ENTITY e \"" + std::string(900, 'x') + "\">'>" + Times(1000, "%p;"),
           "")},
      {"a long declaration", WithDoctype(Times(30000, "<!--  -->\n"), "")},
      {"values", WithDoctype("<!ATTLIST a j CDATA 'x' k " + Values(35000) + ">", "")},
      {"notations", WithDoctype("<!ATTLIST a k NOTATION " + Values(35000) + ">", "")},
      {"inserted values",
       WithDoctype("<!ENTITY % p '<!ATTLIST a k " + Values(8000) + ">'>%p;", "")},
      {"hidden references",
       WithDoctype(Bomb(9, 10) + "<!ENTITY h '" + Times(10, "&#38;e8;") + "'>", "&h;")},
      {"many declarations", WithDoctype("<!ATTLIST a" + attributes + ">", "")},
      {"many attributes", "<a" + many + "/>"},
      {"the same behind a quote",
       "<!DOCTYPE a [<!ENTITY e \"<b k='\"><!-- ' -->]><a" + many + "/>"},
      {"defaults", WithDoctype("<!ATTLIST b k CDATA '" + large + "'>", Times(20000, "<b/>"))},
  };
  for (const auto& c : cases) {
    const auto start = std::chrono::steady_clock::now();
    RunOnSmallStack(512 * 1024, [&] {
      EXPECT_EQ(FaultOf(c.document), DocumentFault::kExpandsTooMuch) << c.what;
    });
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)) << c.what;
  }
}

TEST(XmlDocument, ExpandsGenerouslyWhatIsHonest) {
  const std::string large(60000, 'x');
  EXPECT_EQ(FromBytes(WithDoctype("<!ENTITY nbsp '&#160;'>", Times(50000, "word&nbsp;"))).shown,
            "<a>" + Times(50000, "word\xC2\xA0") + "</>");
  EXPECT_EQ(FromBytes(WithDoctype(Bomb(10, 1), "1&e9;")).shown, "<a>1 </>");
  EXPECT_EQ(
      FromBytes(WithDoctype("<!ENTITY % p '<!ATTLIST a k " + Values(1000) + ">'>%p;", "1")).shown,
      "<a k=v1>1</>");
  EXPECT_EQ(FromBytes(WithDoctype("<!ENTITY e '" + large + "'>", "&e;&e;")).shown,
            "<a>" + large + large + "</>");
}

TEST(XmlDocument, SaysWhereItIsMalformed) {
  const struct {
    std::string document;
    LONG line, column;
  } cases[] = {{"", 1, 1},
               {"<a>\n<b>\n  </a>", 3, 7},
               {"<a>\n\n<b x=1/></a>", 3, 6},
               {"<a>\n<b>", 2, 4},
               {"<a>\né\né &no; </a>", 3, 7},
               {"<a>\n&x </a>", 2, 3},
               {"<a>&lt;&#65;&#1; </a>", 1, 17},
               {"<a>&#x0G;</a>", 1, 8},
               {"<a/>\n<b/>", 2, 1},
               {"<a/>\n b", 2, 2},
               {"<a\n x='1'\n x='2' y='3'/>", 3, 13},
               {"<a k='&amp; &' l='1'/>", 1, 14},
               {"<a k='b < c' l='1'/>", 1, 9},
               {"<a k=\"1\"l='1'/>", 1, 9},
               {"<a k l='1'/>", 1, 6},
               {"<a / k='1'/>", 1, 4},
               {"<a><1/></a>", 1, 5},
               {"<a>1 < 2 </a>", 1, 7},
               {"<a>]]></a>", 1, 4},
               {"<a></a k='1'>", 1, 8},
               {"<a><!-- b -- c --></a>", 1, 11},
               {"<a><?xml version='1.0'?></a>", 1, 9},
               {"<a>\n\x01</a>", 2, 1},
               {"<a k='\x01' l='1'/>", 1, 7},
               {"<a>" + Times(3000, "<b>line</b>\n") + "<c></d>\n</a>", 3001, 8},
               {"<!DOCTYPE a [\n<!ENTITY e 'x'>\n]>\n<a>&e;\n</b>", 5, 0}};
  for (const auto& c : cases) {
    for (const Outcome& outcome :
         {FromBytes(c.document), FromText(c.document), FromUtf16(c.document)}) {
      EXPECT_EQ(outcome.error.fault, DocumentFault::kMalformed) << c.document;
      EXPECT_EQ(outcome.error.line, c.line) << c.document << "\n" << outcome.error.reason;
      EXPECT_GT(outcome.error.column, 0) << c.document;
      EXPECT_EQ(c.column ? outcome.error.column : 0, c.column) << c.document;
    }
  }
}

TEST(XmlDocument, LoadsWhatTheRecommendationAllows) {
  for (const auto& row : TestTable("conformance.txt")) {
    const bool loads = FromBytes(row[1]).error.fault == DocumentFault::kNone;
    const char own = RunsOnWine() ? 'W' : 'L';
    EXPECT_EQ(loads, row[0][0] == '+' || row[0][0] == own) << row[1];
  }
}

TEST(XmlDocument, NestsAsDeepAsHonestDocumentsDoAndNoDeeper) {
  EXPECT_EQ(FromBytes(Times(200, "<a>") + Times(200, "</a>")).shown,
            Times(200, "<a>") + Times(200, "</>"));
  for (const char* start : {"<a>", "<a>\n"})
    EXPECT_EQ(FaultOf(Times(20000, start)), DocumentFault::kTooDeep);
}

TEST(XmlDocument, FilesThatDoNotOpenSayWhy) {
  const TempFolder folder;
  for (const Wide& path : {W(folder / "missing"), W(folder / ".")}) {
    const Outcome outcome = After([&](XmlDocument& document) { document.LoadFile(path); });
    EXPECT_EQ(outcome.error.fault, DocumentFault::kCannotOpen);
    EXPECT_NE(outcome.error.systemError, 0u);
  }
}

}  // namespace vosmere::test::xml_document
