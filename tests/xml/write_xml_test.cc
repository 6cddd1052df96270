#include "vosmere/xml/write_xml.h"

#include <functional>

#include "tests/support/document.h"
#include "tests/support/platform.h"
#include "tests/support/test.h"
#include "vosmere/cpp/own.h"

namespace vosmere::test::write_xml {

/// A writer whose document is what `fill` appends.
class Writer : public CWriteXML {
 public:
  explicit Writer(std::function<void(Writer&)> fill) : fill_(std::move(fill)) {}

  using CWriteXML::AddXMLVersion;
  using CWriteXML::BeginDocument;
  using CWriteXML::BSTRGetUTF8;
  using CWriteXML::FillBoolean;
  using CWriteXML::FillBSTRString;
  using CWriteXML::FillNode;
  using CWriteXML::FillNodeChar;
  using CWriteXML::FillXMLBSTR;
  using CWriteXML::PutBytes;
  using CWriteXML::PutNumber;

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

TEST(WriteXml, NumbersStandWholeAcrossTheEndsOfChunks) {
  for (std::size_t room = 0; room <= 12; ++room) {
    const std::string before(CChunkBuffer::kChunkSize - room, 'x');
    EXPECT_EQ(Written([&](Writer& w) {
                w.PutBytes(before);
                w.PutNumber(-2147483647 - 1);
                w.PutNumber(0);
              }),
              before + "-21474836480");
  }
}

TEST(WriteXml, TheCloseFragmentIsThreeBytesLongerAndLengthsComeFromThePrefix) {
  const OwnedBstr value{W("a&b")}, empty{W("")}, zero{W(u"a\0b")};
  EXPECT_EQ(Written([&](Writer& w) {
              EXPECT_TRUE(w.FillNode(value.get(), "<url>", "</url>\r\nnot this", 5));
              EXPECT_TRUE(w.FillNode(empty.get(), "<url>", "</url>\r\n", 5));
              EXPECT_TRUE(w.FillNode(nullptr, "<u>", "</u>\r\n", 3));
              EXPECT_TRUE(w.FillNodeChar("a&b", "<url>", "</url>\r\nnot this", 5));
              EXPECT_TRUE(w.FillNodeChar(nullptr, "<u>", "</u>\r\n", 3));
              for (const bool value : {true, false}) w.FillBoolean(value, "<a>", "</a>\r\n", 3);
              EXPECT_TRUE(w.FillBSTRString(zero.get()));
            }),
            "<url>a&amp;b</url>\r\n<url></url>\r\n<u></u>\r\n<url>a&b</url>\r\n<u></u>\r\n"
            "<a>true</a>\r\n<a>false</a>\r\n" +
                std::string("a\0b", 3));
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
      w.PutBytes("cleared");
      w.BeginDocument();
      w.FillXMLBSTR(content.get());
    });
    writer.SetEncoding(c.encoding.c_str());
    EXPECT_EQ(Saved(writer), "<?xml version=\"1.0\" encoding=\"" + c.named + "\"?>\n\xC3\xA9");
  }
}

/// The number of files that this process has open; 0 if it is unknown.
std::ptrdiff_t OpenFiles() {
  std::error_code none;
  if (RunsOnWine()) return 0;  // they are open in Wine's server
  return std::distance(std::filesystem::directory_iterator("/proc/self/fd", none), {});
}

TEST(WriteXml, GeneratesOnceClosesItsFileAndHandsOutNothingWithoutMemory) {
  const TempFolder folder;
  const Wide path = W(folder / "out");
  std::string text = "first";
  Writer writer([&](Writer& w) { w.PutBytes(text); });
  const std::ptrdiff_t before = OpenFiles();
  for (const char* const next : {"second", "third"}) {
    EXPECT_TRUE(writer.SaveToFile(path));
    EXPECT_EQ(OpenFiles(), before);
    EXPECT_EQ(ReadBytes(folder / "out"), "first");
    EXPECT_TRUE(std::filesystem::remove(folder / "out"));
    text = next;
  }
  EXPECT_EQ(OwnedBstr(writer.GetXMLBSTR()).utf8(), "first");
  ConvertedText bytes;
  int length = 0;
  EXPECT_TRUE(writer.GetXMLBytes(Out(bytes), &length));
  EXPECT_EQ(std::string(bytes.get(), static_cast<std::size_t>(length) + 1),
            std::string("first\0", 6));
  EXPECT_EQ(writer.generated, 1);
  const FailingMemory memory(0);
  EXPECT_EQ(writer.GetXMLBSTR(), nullptr);
  char* none = nullptr;
  EXPECT_FALSE(writer.GetXMLBytes(&none, &length));
  EXPECT_EQ(writer.LastError().fault, DocumentFault::kNoMemory);
}

TEST(WriteXml, HandsOutTheDocumentUpToTheFirstZero) {
  const struct {
    std::string written, handedOut;
  } cases[] = {
      {"a\xC3\xA9", "aé"},
      {std::string("a\0b", 3), "a"},
      {std::string("\0b", 2), "(null)"},
      {"", "(null)"},
      {std::string(10000, 'x'), std::string(10000, 'x')},
  };
  for (const auto& c : cases) {
    Writer writer([&](Writer& w) { w.PutBytes(c.written); });
    EXPECT_EQ(OwnedBstr(writer.GetXMLBSTR()).utf8(), c.handedOut);
  }
}

TEST(WriteXml, SaysWhyADocumentIsNotSaved) {
  const std::string block(1 << 20, 'x');
  const TempFolder folder;
  WriteBytes(folder / "out", "before");
  const struct {
    int blocks, generated;
    Wide path;
    DocumentFault fault;
  } cases[] = {
      {0, 1, W(folder / "out"), DocumentFault::kNothingToWrite},
      {100, 1, W(folder / "out"), DocumentFault::kTooLarge},
      {1, 0, W(folder / "missing" / "out"), DocumentFault::kCannotOpen},
      {1, 0, W(folder / "."), DocumentFault::kCannotOpen},
      {1, 0, nullptr, DocumentFault::kCannotOpen},
      {1, 1, W("/dev/full"), DocumentFault::kCannotWrite},
  };
  for (const auto& c : cases) {
    if (c.fault == DocumentFault::kCannotWrite && !std::filesystem::exists("/dev/full")) continue;
    Writer writer([&](Writer& w) {
      for (int i = 0; i < c.blocks; ++i) w.PutBytes(block);
    });
    const Traces traces;
    EXPECT_FALSE(writer.SaveToFile(c.path));
    EXPECT_EQ(writer.LastError().fault, c.fault);
    EXPECT_NE(writer.LastError().reason[0], 0);
    EXPECT_EQ(writer.generated, c.generated);
    if (c.fault == DocumentFault::kCannotOpen)
      EXPECT_THAT(traces.lines(),
                  ElementsAre(testing::AllOf(testing::StartsWith("0X"),
                                             HasSubstr(" CWriteXML Could not open file. "))));
    else if (c.blocks != 1)
      EXPECT_EQ(OwnedBstr(writer.GetXMLBSTR()).get(), nullptr);
    else
      EXPECT_NE(writer.LastError().systemError, 0u);
    EXPECT_EQ(writer.SaveToFile(W(folder / "later")), c.blocks == 1);
    EXPECT_EQ(writer.LastError().fault == DocumentFault::kNone, c.blocks == 1);
  }
  EXPECT_EQ(ReadBytes(folder / "out"), "");
}

TEST(WriteXml, ADocumentThatMemoryToreIsNeverSaved) {
  const std::string block(CChunkBuffer::kChunkSize, 'x');
  Writer writer([&](Writer& w) {
    for (int i = 0; i < 10; ++i) w.PutBytes(block);
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
        if ((w.*convert)(value.get(), &text, &length))
          w.PutBytes({text, static_cast<std::size_t>(length)});
        CUnicodeTool::DeleteBuffer(text);
      }
    });
    return writer.GetXMLBSTR();
  });
}

}  // namespace vosmere::test::write_xml
