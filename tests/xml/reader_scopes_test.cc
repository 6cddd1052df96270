#include "vosmere/xml/reader_scopes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document.h"

namespace vosmere::test {
namespace {

using namespace xml;

/// Notes what is read: "+" and "-" around a shelf, "title=" before a text.
struct Log {
  std::string text;

  Log* self() { return this; }
  void Title(const WChar* title) { text += "title=" + Utf8(title) + ' '; }
};

void Open(Log& log, const Element&) {
  log.text += "+ ";
}
void Close(Log& log) {
  log.text += "- ";
}
void Pages(Log& log, const WChar* value) {
  log.text += "pages=" + Utf8(value) + ' ';
}
void Note(Log& log, const Element&) {
  log.text += "note ";
}

enum Scope : unsigned { kRoot = 1, kShelf = 2, kEnd = 4 };

constexpr Field<Log> kSizeFields[] = {{"pages", Pages}, {BeginningWith("Sheets"), Pages}};

constexpr ScopedElement<Log> kElements[] = {
    {kRoot, "end", nullptr, kEnd},
    {kRoot | kShelf, "shelf", Open, kShelf, Close},
    {kShelf | kEnd, "title", TextTo<&Log::self, &Log::Title>},
    {kShelf, BeginningWith("size"), AttributesTo<&Log::self, kSizeFields>},
    {kAnywhere, "note", Note},
};

class Reader : public CReadXML {
 public:
  explicit Reader(Repeats repeats) : repeats_(repeats) {}
  Log log;

 protected:
  void InvokeParser(XmlNode root) override {
    if (IsRootNamed(root, "r")) ReadChildren(kElements, log, Reported(root), kRoot, repeats_);
  }

 private:
  Repeats repeats_;
};

std::string Read(const std::string& document, Repeats repeats = Repeats::kAll) {
  Reader reader(repeats);
  return Load(reader, document) ? reader.log.text : "(failed)";
}

TEST(ReaderScopes, ElementsCountWhereTheyBelong) {
  const struct {
    const char* content;
    const char* read;
  } cases[] = {
      {"<shelf><title>a<b>b</b></title></shelf>", "+ title=ab - "},
      {"<title>a</title><shelf/><Shelf/>", "+ - "},
      {"<shelf><shelf><title/></shelf><size pages='1' x='2'/></shelf>", "+ + title= - pages=1 - "},
      {"<shelf><x><title>a</title></x>t<!-- c --></shelf>", "+ - "},
      {"<shelf><sIZEd Pages='1' sheetsOfPaper='2'/><siz pages='3'/></shelf>", "+ pages=2 - "},
      {"<x><y><note/></y></x><shelf><title><b><note/></b></title></shelf>",
       "note + title= note - "},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Read("<r>" + std::string(c.content) + "</r>"), c.read) << c.content;
}

TEST(ReaderScopes, RepeatedElementsCountAllOrFirst) {
  const char* const document =
      "<r><shelf><title>a</title><title>b</title></shelf><shelf><title>c</title></shelf>"
      "<end><title>d</title></end><end><title>e</title></end></r>";
  EXPECT_EQ(Read(document), "+ title=a title=b - + title=c - title=d title=e ");
  EXPECT_EQ(Read(document, Repeats::kFirst), "+ title=a - + title=c - title=d ");
}

TEST(ReaderScopes, AnotherRootIsTraced) {
  const Traces traces;
  EXPECT_EQ(Read("<R><shelf/></R>"), "");
  EXPECT_THAT(traces.lines(), testing::ElementsAre("Element Name=R\n"));
}

}  // namespace
}  // namespace vosmere::test
