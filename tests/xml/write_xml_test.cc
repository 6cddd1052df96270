#include "vosmere/xml/write_xml.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/support/document.h"
#include "tests/support/failing_memory.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere::test {
namespace {

/// A writer whose document is what `fill` appends.
class Writer : public CWriteXML {
 public:
  explicit Writer(std::function<void(Writer&)> fill) : fill_(std::move(fill)) {}

  using CWriteXML::AddXMLVersion;
  using CWriteXML::BeginDocument;
  using CWriteXML::BSTRGetUTF8;
  using CWriteXML::FillBSTRString;
  using CWriteXML::FillNode;
  using CWriteXML::FillNodeChar;
  using CWriteXML::FillString;
  using CWriteXML::FillXMLBSTR;

  int generated = 0;

 protected:
  bool FillData() override {
    ++generated;
    fill_(*this);
    return false;
  }

 private:
  std::function<void(Writer&)> fill_;
};

std::string Written(std::function<void(Writer&)> fill) {
  Writer writer(std::move(fill));
  return Saved(writer);
}

TEST(WriteXml, EscapesExactlyFiveCharacters) {
  const struct {
    Wide value;
    const char* escaped;
  } cases[] = {
      {W("<&\"'>"), "&lt;&amp;&quot;&apos;&gt;"},
      {W("a<b&c\"d'e>f"), "a&lt;b&amp;c&quot;d&apos;e&gt;f"},
      {W(u"\u00E9\U0001F600"), "\xC3\xA9\xF0\x9F\x98\x80"},
      {W(u"\xD800x\xDC00"), "\xEF\xBF\xBDx\xEF\xBF\xBD"},
      {W("\t\r\n\x01"), "\t\r\n\x01"},
      {W("&amp;"), "&amp;amp;"},
      {W("x"), "x"},
  };
  for (const auto& c : cases) {
    const OwnedBstr value(c.value);
    EXPECT_EQ(Written([&](Writer& w) { w.FillXMLBSTR(value.get()); }), c.escaped);
    char* text = nullptr;
    int length = 0;
    Writer writer([](Writer&) {});
    ASSERT_TRUE(writer.GetXMLUTF8(value.get(), &text, &length));
    EXPECT_EQ(std::string(text, length + 1), c.escaped + std::string(1, '\0'));
    CUnicodeTool::DeleteBuffer(text);
  }
}

TEST(WriteXml, PairsAreNeverPartedInLongTexts) {
  for (std::size_t before = 505; before < 520; ++before) {
    std::u16string text(before, u'a');
    for (int i = 0; i < 600; ++i) text += u"\U0001F600&";
    const OwnedBstr value{W(text)};
    std::string plain(before, 'a'), escaped(before, 'a');
    for (int i = 0; i < 600; ++i) {
      plain += "\xF0\x9F\x98\x80&";
      escaped += "\xF0\x9F\x98\x80&amp;";
    }
    EXPECT_EQ(Written([&](Writer& w) { w.FillBSTRString(value.get()); }), plain);
    EXPECT_EQ(Written([&](Writer& w) { w.FillXMLBSTR(value.get()); }), escaped);
  }
}

TEST(WriteXml, LengthsComeFromThePrefix) {
  const OwnedBstr value{W(u"a\0b")};
  EXPECT_EQ(Written([&](Writer& w) { w.FillBSTRString(value.get()); }), std::string("a\0b", 3));
}

TEST(WriteXml, TheCloseFragmentIsThreeBytesLonger) {
  const OwnedBstr value{W("a&b")}, empty{W("")};
  EXPECT_EQ(Written([&](Writer& w) {
              w.FillNode(value.get(), "<url>", "</url>\r\nnot this", 5);
              w.FillNode(empty.get(), "<url>", "</url>\r\n", 5);
              w.FillNode(nullptr, "<u>", "</u>\r\n", 3);
              w.FillNodeChar("a&b", "<url>", "</url>\r\nnot this", 5);
            }),
            "<url>a&amp;b</url>\r\n<url></url>\r\n<u></u>\r\n<url>a&b</url>\r\n");
}

TEST(WriteXml, DeclarationEndsInALoneLineFeedAndNamesWithoutConverting) {
  const struct {
    std::string encoding;
    std::string named;
  } cases[] = {
      {"ISO-8859-1", "ISO-8859-1"},
      {std::string(18, 'e'), std::string(18, 'e')},
      {std::string(19, 'e'), "UTF-8"},
      {"", "UTF-8"},
  };
  for (const auto& c : cases) {
    const OwnedBstr content{W("é")};
    Writer writer([&](Writer& w) {
      w.BeginDocument();
      w.FillXMLBSTR(content.get());
    });
    writer.SetEncoding(c.encoding.c_str());
    EXPECT_EQ(Saved(writer), "<?xml version=\"1.0\" encoding=\"" + c.named + "\"?>\n\xC3\xA9");
  }
}

TEST(WriteXml, GeneratesOnce) {
  std::string text = "first";
  Writer writer([&](Writer& w) { w.FillString(text.data(), static_cast<int>(text.size())); });
  EXPECT_EQ(Saved(writer), "first");
  text = "second";
  EXPECT_EQ(Saved(writer), "first");
  EXPECT_EQ(OwnedBstr(writer.GetXMLBSTR()).utf8(), "first");
  char* bytes = nullptr;
  int length = 0;
  EXPECT_TRUE(writer.GetXMLBytes(&bytes, &length));
  EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(length) + 1), std::string("first\0", 6));
  CUnicodeTool::DeleteBuffer(bytes);
  EXPECT_EQ(writer.generated, 1);
}

TEST(WriteXml, HandsOutTheDocumentUpToTheFirstZero) {
  const auto handedOut = [](const std::string& bytes) {
    Writer writer([&](Writer& w) { w.FillString(bytes.data(), static_cast<int>(bytes.size())); });
    return OwnedBstr(writer.GetXMLBSTR()).utf8();
  };
  EXPECT_EQ(handedOut("a\xC3\xA9"), "aé");
  EXPECT_EQ(handedOut(std::string("a\0b", 3)), "a");
  EXPECT_EQ(handedOut(std::string("\0b", 2)), "(null)");
  EXPECT_EQ(handedOut(""), "(null)");
  EXPECT_EQ(handedOut(std::string(10000, 'x')), std::string(10000, 'x'));
}

TEST(WriteXml, AnOverflowingDocumentIsNeverSaved) {
  const std::string block(1 << 20, 'x');
  Writer writer([&](Writer& w) {
    for (int i = 0; i < 101; ++i) w.FillString(block.data(), static_cast<int>(block.size()));
  });
  const TempFolder folder;
  WriteBytes(folder / "out", "before");
  EXPECT_FALSE(writer.SaveToFile(W(folder / "out")));
  EXPECT_EQ(writer.LastError().fault, DocumentFault::kTooLarge);
  EXPECT_EQ(ReadBytes(folder / "out"), "");
  EXPECT_EQ(OwnedBstr(writer.GetXMLBSTR()).get(), nullptr);
}

TEST(WriteXml, ADocumentThatMemoryToreIsNeverSaved) {
  const std::string block(CChunkBuffer::kChunkSize, 'x');
  Writer writer([&](Writer& w) {
    for (int i = 0; i < 10; ++i) w.FillString(block.data(), static_cast<int>(block.size()));
  });
  const TempFolder folder;
  const Wide path = W(folder / "out");
  {
    const FailingMemory memory(8);
    EXPECT_THROW(writer.SaveToFile(path), std::bad_alloc);
  }
  EXPECT_FALSE(writer.SaveToFile(path));
  EXPECT_EQ(writer.LastError().fault, DocumentFault::kNoMemory);
  EXPECT_EQ(ReadBytes(folder / "out"), "");
  EXPECT_EQ(OwnedBstr(writer.GetXMLBSTR()).get(), nullptr);
}

TEST(WriteXml, ATextThatMemoryLostTearsTheDocument) {
  const OwnedBstr value{Repeated(100)};
  WriteAtEachFailure([&] {
    Writer writer([&](Writer& w) {
      w.FillNode(value.get(), "<u>", "</u>\r\n", 3);
      for (const auto convert : {&Writer::GetXMLUTF8, &Writer::BSTRGetUTF8}) {
        char* text = nullptr;
        int length = 0;
        if ((w.*convert)(value.get(), &text, &length)) w.FillString(text, length);
        CUnicodeTool::DeleteBuffer(text);
      }
    });
    return writer.GetXMLBSTR();
  });
}

TEST(WriteXml, WithoutMemoryNothingIsHandedOut) {
  Writer writer([](Writer& w) { w.FillString("text", 4); });
  ASSERT_EQ(Saved(writer), "text");
  const FailingMemory memory(0);
  EXPECT_EQ(writer.GetXMLBSTR(), nullptr);
  char* bytes = nullptr;
  int length = 0;
  EXPECT_FALSE(writer.GetXMLBytes(&bytes, &length));
  EXPECT_EQ(writer.LastError().fault, DocumentFault::kNoMemory);
}

TEST(WriteXml, SaysWhyAFileCannotBeCreated) {
  const TempFolder folder;
  Writer writer([](Writer& w) { w.AddXMLVersion(); });
  const Traces traces;
  for (const Wide& path : {W(folder / "missing" / "out"), W(folder / "."), Wide(nullptr)}) {
    EXPECT_FALSE(writer.SaveToFile(path));
    EXPECT_EQ(writer.LastError().fault, DocumentFault::kCannotOpen);
  }
  ASSERT_EQ(traces.lines().size(), 3u);
  EXPECT_EQ(traces.lines()[0].substr(0, 2), "0X");
  EXPECT_NE(traces.lines()[0].find(" CWriteXML Could not open file. "), std::string::npos);
  EXPECT_EQ(writer.generated, 0);
}

TEST(WriteXml, AnEmptyDocumentLeavesAnEmptyFile) {
  const TempFolder folder;
  WriteBytes(folder / "out", "before");
  Writer writer([](Writer&) {});
  EXPECT_FALSE(writer.SaveToFile(W(folder / "out")));
  EXPECT_EQ(writer.LastError().fault, DocumentFault::kNothingToWrite);
  EXPECT_EQ(ReadBytes(folder / "out"), "");
}

}  // namespace
}  // namespace vosmere::test
