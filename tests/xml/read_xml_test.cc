#include "vosmere/xml/read_xml.h"

#include <stdexcept>

#include "tests/support/document.h"
#include "tests/support/test.h"
#include "vosmere/platform/internal/xml_document.h"
#include "vosmere/xml/parse_xml.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::test::read_xml {

/// Records the calls of the walk.
class Recorder : public CParseXML {
 public:
  void ParseXMLTree(XmlNode node) override { GoThroughChildNodes(node); }
  std::string calls;

 protected:
  void OnEnterNode(XmlNode node) override { Note('<', node); }
  void OnLeaveNode(XmlNode node) override { Note('>', node); }
  void ProcessElementNode(XmlNode node) override {
    Note('=', node);
    xml::ForEachAttribute(node, [this](WideView name, const WChar* value) {
      calls += "@" + Utf8(name.data, name.size) + ":" + Utf8(value);
    });
  }

 private:
  void Note(char what, const XmlNode& node) {
    calls += what + std::to_string(depth());
    calls += Utf8(node.Name().c_str());
  }
};

class Reader : public CReadXML {
 public:
  int invoked = 0;
  std::string calls;
  bool throws = false;

 protected:
  void InvokeParser(XmlNode root) override {
    ++invoked;
    if (throws) throw std::runtime_error("not to my taste");
    Recorder recorder;
    recorder.ParseXMLTree(root);
    calls = recorder.calls;
  }
};

TEST(ReadXml, WalksRootsWithAnyContentDepthFirstInDocumentOrder) {
  const struct {
    const char *document, *calls;
  } cases[] = {
      {"<a/>", ""},
      {"<a></a>", ""},
      {"<a> </a>", "<1a=1a<2#text>2#text>1a"},
      {"<a><!----></a>", "<1a=1a<2#comment>2#comment>1a"},
      {"<a><b x='1' y=''>t</b> <!--c--><?p i?><![CDATA[d]]></a>",
       "<1a=1a"
       "<2b=2b@x:1@y:<3#text>3#text>2b"
       "<2#text>2#text<2#comment>2#comment<2p>2p<2#cdata-section>2#cdata-section"
       ">1a"},
  };
  for (const auto& c : cases) {
    Reader reader;
    EXPECT_TRUE(Load(reader, c.document));
    EXPECT_EQ(reader.calls, c.calls);
  }
}

TEST(ReadXml, AnExceptionOfTheReaderIsAFailedLoad) {
  Reader reader;
  reader.throws = true;
  EXPECT_FALSE(Load(reader, "<a>1</a>"));
  EXPECT_EQ(reader.LastError().fault, DocumentFault::kHandlerFailed);
  EXPECT_STREQ(reader.LastError().reason, "not to my taste");
  reader.throws = false;
  EXPECT_TRUE(Load(reader, "<a>1</a>"));
  EXPECT_EQ(reader.LastError().fault, DocumentFault::kNone);
}

TEST(ReadXml, FilesThatCannotBeReadFail) {
  const TempFolder folder;
  Reader reader;
  for (const Wide& path : {W(folder / "missing"), W(folder / "."), Wide(nullptr)}) {
    EXPECT_FALSE(reader.LoadFile(path));
    EXPECT_EQ(reader.LastError().fault, DocumentFault::kCannotOpen);
  }
  WriteBytes(folder / "empty", "");
  EXPECT_FALSE(reader.LoadFile(W(folder / "empty")));
  EXPECT_EQ(reader.LastError().fault, DocumentFault::kMalformed);
  EXPECT_FALSE(reader.LoadXML(nullptr, 3));
  EXPECT_FALSE(reader.LoadXML("<a/>", -1));
  EXPECT_FALSE(reader.LoadBSTRXML(nullptr));
  EXPECT_EQ(reader.invoked, 0);
}

TEST(ReadXml, BytesTellTheirEncoding) {
  const std::u16string utf16 = u"\xFEFF<?xml version='1.0' encoding='UTF-16'?><a x='é€'>1</a>";
  const std::string cases[] = {
      "<a x='é€'>1</a>",
      "\xEF\xBB\xBF<a x='é€'>1</a>",
      "<?xml version='1.0' encoding='utf-8'?><a x='é€'>1</a>",
      "<?xml version='1.0' encoding='windows-1252'?><a x='\xE9\x80'>1</a>",
      "<?xml version='1.0' encoding='ISO-8859-1'?><a x='\xE9&#8364;'>1</a>",
      Utf16(utf16, false),
      Utf16(utf16, true),
  };
  const TempFolder folder;
  for (const std::string& bytes : cases) {
    Reader fromBytes, fromFile;
    WriteBytes(folder / "file", bytes);
    EXPECT_TRUE(Load(fromBytes, bytes) && fromFile.LoadFile(W(folder / "file")));
    EXPECT_EQ(fromBytes.calls, "<1a=1a@x:é€<2#text>2#text>1a");
    EXPECT_EQ(fromFile.calls, fromBytes.calls);
  }
  Reader reader;
  EXPECT_TRUE(reader.LoadBSTRXML(W("\uFEFF<a x='é€'>1</a>")));
  EXPECT_FALSE(Load(reader, "<a>\xFF</a>"));
  EXPECT_FALSE(Load(reader, "<?xml version='1.0' encoding='no-such'?><a>1</a>"));
}

TEST(ReadXml, BadBytesBehindTheRootAreBadBytes) {
  const std::string blanks(8192, ' ');
  for (const char* encoding : {"UTF-8", "windows-1252"}) {
    const std::string whole =
        std::string("<?xml version='1.0' encoding='") + encoding + "'?><a>1</a>" + blanks;
    Reader reader;
    EXPECT_TRUE(Load(reader, whole));
    EXPECT_FALSE(Load(reader, whole + "\xFF\xFF<&&")) << encoding;
    EXPECT_FALSE(Load(reader, whole + '\0' + "<&&")) << encoding;
    EXPECT_FALSE(Load(reader, whole + '\0')) << encoding;
  }
  Reader reader;
  for (const bool bigEndian : {false, true}) {
    const std::string whole = Utf16(u"\xFEFF<a>1</a>\n", bigEndian);
    EXPECT_TRUE(Load(reader, whole));
    EXPECT_FALSE(Load(reader, whole + '\0'));
    EXPECT_FALSE(Load(reader, whole + '\n'));
  }
  EXPECT_FALSE(reader.LoadBSTRXML(W(u"<a>1</a>" + std::u16string(8192, u' ') + u'\xD800')));
}

TEST(ReadXml, WideTextIsReadAsItIsWhateverItsLengthAndTheEncodingItDeclares) {
  std::vector<std::string> starts = {" ", "<!-- -->"};
  for (const char* encoding : {"UTF-8", "UTF-16", "UTF-32", "US-ASCII", "ISO-8859-1",
                               "windows-1252", "Shift_JIS", "EBCDIC-CP-US", "IBM037", "no-such"})
    starts.push_back(std::string("<?xml version='1.0' encoding='") + encoding + "'?>");
  std::string text;
  for (int i = 0; i < 1000; ++i) text += "😀";
  for (const std::string& start : starts)
    for (int length = 0; length < 20; ++length) {
      const std::string document =
          start + "<a>" + std::string(length, 'x') + text + "<b c='Zürich'/></a>";
      Reader reader;
      EXPECT_TRUE(reader.LoadBSTRXML(W(document))) << start << length;
      ASSERT_EQ(reader.calls, "<1a=1a<2#text>2#text<2b=2b@c:Zürich>2b>1a") << start << length;
    }
}

TEST(ReadXml, NumbersAreReadAsFarAsTheyGo) {
  const struct {
    const char* text;
    LONG number;
  } cases[] = {
      {"", 0},    {"x", 0},    {" \t\r\n12x9", 12},        {"+7", 7},
      {"-7", -7}, {"- 7", 0},  {"2147483648", 2147483647}, {"-2147483648", -2147483647 - 1},
      {"+-7", 0}, {"0x10", 0}, {"2147483647", 2147483647}, {"-2147483649", -2147483647 - 1}};
  for (const auto& c : cases)
    EXPECT_EQ(xml::NumberFromText(W(std::string(c.text))), c.number) << c.text;
  const Wide text = W("HTTP:");
  EXPECT_TRUE(xml::BeginsWithNoCase(WideView(text, 4), "http"));
  EXPECT_FALSE(xml::BeginsWithNoCase(WideView(text, 3), "http"))
      << "what follows it is not its own";
}

}  // namespace vosmere::test::read_xml
