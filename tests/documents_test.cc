// What holds for every document.
#include <regex>
#include <set>
#include <sstream>

#include "tests/support/document.h"
#include "tests/support/jobs.h"
#include "tests/support/platform.h"
#include "tests/support/stored_documents.h"
#include "tests/support/test.h"
#include "tests/support/tool.h"

namespace vosmere::test::documents {

/// `text` with every run of characters between one of `before` and one of `after` that satisfies
/// `test` replaced by what `change` makes of it.
template <class Test, class Change>
std::string Between(const std::string& text, const std::string& before, const std::string& after,
                    Test test, Change change) {
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    result += text[at++];
    if (before.find(text[at - 1]) == before.npos) continue;
    const std::size_t end = text.find_first_of(before + after, at);
    if (end == text.npos || after.find(text[end]) == after.npos) continue;
    const std::string run = text.substr(at, end - at);
    result += (test(run) ? change(run) : run) + text[end];
    at = end + 1;
  }
  return result;
}

bool Any(const std::string& run) {
  return !run.empty();
}

std::string Replaced(std::string text, const std::string& what, const std::string& with) {
  for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += with.size())
    text.replace(at, what.size(), with);
  return text;
}

/// Without the identities that a writer makes up.
std::string WithoutMadeUp(std::string text) {
  const std::string sync = "<sx:sync id=\"";
  for (std::size_t at = 0; (at = text.find(sync, at)) != text.npos;) {
    at += sync.size();
    if (text.substr(at + 8, 1) == "-" && text.substr(at, 8) != "00000000")
      text.replace(at, 36, "made up");
  }
  return text;
}

class StoredDocuments : public testing::TestWithParam<StoredDocument> {
 protected:
  std::string Again(const std::string& bytes) {
    return WithoutMadeUp(Rewritten(GetParam(), bytes));
  }
  std::string Written(CReadXML& reader) {
    return WithoutMadeUp(OwnedBstr(GetParam().write(reader)).utf8());
  }
  /// In the root element, with the prefixes that the golden document declares.
  std::string InRoot(const std::string& content) {
    const std::size_t begin = golden.find("<" + root);
    return golden.substr(begin, golden.find('>', begin) + 1 - begin) + content + "</" + root + ">";
  }
  /// What is written when there is no data: nothing, or a document without content.
  testing::Matcher<std::string> IsNothing() { return AnyOf("(null)", Again(InRoot(" "))); }
  /// The golden document with all attributes and texts of that length.
  std::string Filled(std::size_t length) {
    const auto fill = [=](const std::string&) { return std::string(length, 'x'); };
    const std::string body = golden.substr(golden.find('<', 1));
    return Between(Between(body, "\"", "\"", Any, fill), ">", "<", Any, fill);
  }

  const Zone zone{"EST5"};
  const SteppedClock clock{1000};
  const std::string golden = Golden(GetParam().golden);
  const std::string root = GetParam().root;
};

// Files with the document when it was read and written, if it changes, with its JSON, and with what
// the tool shows of it and warns of.
const std::string kAgain = ".again", kJson = ".json", kShown = ".shown";

TEST_P(StoredDocuments, AreReadBack) {
  const bool changes = std::filesystem::exists(TestPath(GetParam().golden + kAgain));
  const std::string again = changes ? Golden(GetParam().golden + kAgain) : golden;
  EXPECT_EQ(Again(golden), again);
  EXPECT_EQ(Again(again), again);
  const std::string file = Quoted(TestPath(GetParam().golden));
  EXPECT_EQ(RunTool("show --json " + file).out, TestData(GetParam().golden + kJson));
  const std::string shown = RunTool("show " + file).out + RunTool("check - <" + file).out;
  // Not every parser tells the line and the column.
  EXPECT_EQ(std::regex_replace(shown, std::regex("[0-9]+:[0-9]+ /"), "/"),
            TestData(GetParam().golden + kShown));

  const TempFolder folder;
  const std::string copy = Quoted(folder / "copy");
  EXPECT_EQ(RunTool("copy " + file + ' ' + copy).exitCode, 0);
  EXPECT_EQ(RunTool("copy - - <" + copy).bytes, ReadBytes(folder / "copy"));
  EXPECT_EQ(ReadBytes(folder / "copy") == golden, !changes);
}

TEST_P(StoredDocuments, AreWrittenByteForByte) {
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator(TestPath("written/" + root), none)) {
    const std::string name = "written/" + root + "/" + entry.path().stem().string();
    EXPECT_EQ(Again(TestData(name + ".in")), Golden(name + ".out")) << name;
  }
}

TEST_P(StoredDocuments, AnotherRootIsTracedAndGivesNothing) {
  if (GetParam().anyRoot) return;
  const Traces traces;
  for (const std::string& name : {std::string("x"), "X" + root, root + "s"}) {
    EXPECT_THAT(Again(Replaced(golden, root, name)), IsNothing());
    EXPECT_EQ(traces.lines().back(), "Element Name=" + name + "\n");
  }
}

TEST_P(StoredDocuments, WhatStandsBetweenElementsIsIgnored) {
  EXPECT_EQ(Again(Replaced(golden, "\r\n<", "<!--c--> t<?p i?><unknown id='1'>u</unknown><")),
            Again(golden));
}

TEST_P(StoredDocuments, TextMayComeInPieces) {
  const auto inPieces = [](const std::string& run) {
    return "<!--c--><![CDATA[" + run + "]]><?p i?>";
  };
  const auto isPlain = [](const std::string& run) {
    return !run.empty() && run.find('&') == run.npos && run[0] != '\r' && run[0] != '\n';
  };
  EXPECT_EQ(Again(Between(golden, ">", "<", isPlain, inPieces)), Again(golden));
}

TEST_P(StoredDocuments, EncodingsMakeNoDifference) {
  EXPECT_EQ(Again(Utf16(W("\uFEFF" + Replaced(golden, "UTF-8", "UTF-16")))), Again(golden));
}

TEST_P(StoredDocuments, AttributesAndTextsMayBeLong) {
  const std::string written = Again(Again(Filled(70000)));
  ASSERT_NE(written, "(not loaded)");
  EXPECT_EQ(Again(written), written);
}

TEST_P(StoredDocuments, NumbersOfThirtyDigitsSaturate) {
  const auto with = [this](const std::string& number) {
    const auto isNumber = [](const std::string& run) {
      return !run.empty() && run.find_first_not_of("0123456789", run[0] == '-') == run.npos;
    };
    return Again(
        Between(golden, ">\"", "<\"", isNumber, [&](const std::string&) { return " " + number; }));
  };
  EXPECT_EQ(with(std::string(30, '9')), with("2147483647"));
  EXPECT_EQ(with("-" + std::string(30, '9')), with("-2147483648"));
}

TEST_P(StoredDocuments, TornOnesDoNotLoadAndGiveNothing) {
  for (std::size_t length = 0; length < golden.rfind('>'); length += 7)
    EXPECT_EQ(Again(golden.substr(0, length)), "(not loaded)") << length;
  const auto reader = GetParam().newReader();
  EXPECT_FALSE(Load(*reader, golden + "<"));
  EXPECT_THAT(Written(*reader), IsNothing());
}

TEST_P(StoredDocuments, OutOfMemoryIsAFailedLoadThatLosesNothing) {
  LoadAtEachFailure(GetParam().newReader, golden);
}

TEST_P(StoredDocuments, OutOfMemoryIsAFailedSave) {
  const std::string document = Filled(100);  // texts too long to be stored without an allocation
  WriteAtEachFailure([&] {
    const auto reader = GetParam().newReader();
    return Load(*reader, document) ? GetParam().write(*reader) : nullptr;
  });
}

/// An element of a document below its root, as bytes.
struct Element {
  std::string path;  ///< its name after those of the elements around it
  std::size_t begin, end;
  std::size_t outside;  ///< where the element around it ends

  std::string name() const { return path.substr(path.rfind('/') + 1); }
};

std::vector<Element> ElementsOf(const std::string& document) {
  std::vector<Element> elements;
  std::vector<std::size_t> open;
  const auto close = [&](std::size_t end) {
    elements[open.back()].end = end;
    for (std::size_t i = open.back() + 1; i < elements.size(); ++i)
      if (!elements[i].outside) elements[i].outside = end;
    open.pop_back();
  };
  for (std::size_t at = 0; (at = document.find('<', at)) != document.npos; ++at) {
    const std::size_t end = document.find('>', at) + 1;
    if (document[at + 1] == '?') continue;
    if (document[at + 1] == '/') {
      close(end);
      continue;
    }
    const std::string around = open.empty() ? "" : elements[open.back()].path + '/';
    const std::size_t name = document.find_first_of(" />", at);
    open.push_back(elements.size());
    elements.push_back({around + document.substr(at + 1, name - at - 1), at, 0, 0});
    if (document[end - 2] == '/') close(end);
  }
  elements.erase(elements.begin());  // the root
  return elements;
}

/// With upper and lower case swapped, except in the prefix.
std::string Cased(std::string name) {
  for (std::size_t i = name.find(':') + 1; i < name.size(); ++i)
    name[i] =
        static_cast<char>(std::islower(name[i]) ? std::toupper(name[i]) : std::tolower(name[i]));
  return name;
}

/// Words for the effect of a change to a document.
struct Fates {
  std::string counts, lost;

  const char* Of(const std::string& again) const {
    return again == counts           ? "counts"
           : again == lost           ? "is lost"
           : again == "(not loaded)" ? "fails"
                                     : "differs";
  }
};

/// For each kind of document, a file says where its elements count, and what one reader makes of
/// several documents.
class Readers : public StoredDocuments {
 protected:
  /// What happens to an element of the golden document when it is somewhere else.
  std::string FateOf(const Element& element) {
    const auto with = [&](const std::string& instead) {
      return std::string(golden).replace(element.begin, element.end - element.begin, instead);
    };
    const std::string text = golden.substr(element.begin, element.end - element.begin);
    const std::string name = element.name(), empty = "<" + name + "/>";
    const Fates fates{Again(golden), Again(with(""))};
    if (fates.lost == fates.counts) return "does not count";
    std::string moved = golden;
    moved.insert(element.outside, text).erase(element.begin, text.size());
    const std::regex tag("(</?)" + name + "\\b");
    const std::string twice = Again(with(text + empty));
    return std::string("in <x> ") + fates.Of(Again(with("<x>" + text + "</x>"))) + ", outside " +
           fates.Of(Again(moved)) + ", as " + Cased(name) + ' ' +
           fates.Of(Again(with(std::regex_replace(text, tag, "$1" + Cased(name))))) + ", the " +
           (twice == fates.counts         ? "first"
            : twice == Again(with(empty)) ? "last"
                                          : "sum") +
           " of two";
  }

  /// What a reader holds after it was given several documents.
  std::string After(std::initializer_list<std::string> documents) {
    std::string written(10'000, ' ');  // allocates its memory before the count
    const long before = LiveAllocations();
    {
      const auto reader = GetParam().newReader();
      for (const std::string& document : documents) Load(*reader, document);
      written = std::string_view(Written(*reader));
    }
    EXPECT_EQ(LiveAllocations(), before);
    return written;
  }

  std::string FatesOfReaders() {
    const std::size_t begin = golden.find('>', golden.find("<" + root)) + 1;
    const std::string twice = golden.substr(0, golden.rfind("</")) + golden.substr(begin);
    const Fates fates{Again(golden), Again(InRoot(" "))};
    const std::string two = After({golden, golden});
    return "nothing is written as " + fates.lost + "\nbefore a torn one it " +
           fates.Of(After({golden, golden + "<"})) + "\nbefore an empty one it " +
           fates.Of(After({golden, InRoot(" ")})) + "\nof two there is " +
           (two == fates.counts   ? "one"
            : two == Again(twice) ? "the sum"
                                  : "another") +
           "\n";
  }
};

TEST_P(Readers, CountElementsWhereTheyBelong) {
  std::string fates = FatesOfReaders();
  for (const Element& element : ElementsOf(golden)) {
    const std::string fate = element.path + ": " + FateOf(element) + "\n";
    if (fates.find(fate) == fates.npos) fates += fate;
  }
  EXPECT_EQ(fates, Golden("readers/" + root + ".txt"));
}

TEST_P(Readers, TakeIrregularDocumentsForRegularOnes) {
  std::istringstream lines(TestData("irregular.txt"));
  const auto again = [&](const std::string& content) {
    return Again(GetParam().anyRoot ? content : InRoot(content + " "));
  };
  std::string kind, content;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('[')) kind = line;
    if (line.starts_with("= ") && kind == "[" + root + "]") {
      EXPECT_EQ(again(content), again(line.substr(2))) << content;
    }
    content = line;
  }
}

TEST_P(StoredDocuments, ElementsNestAsDeepAsTheParserDoesOnASmallStack) {
  std::set<std::string> names = {"unknown"};
  for (const Element& element : ElementsOf(golden)) names.insert(element.name());
  for (const std::string& name : names) {
    const auto nested = [&](int levels) {
      std::string begin, end;
      for (int i = 1; i < levels; ++i) begin += "<" + name + ">", end += "</" + name + ">";
      return InRoot(begin + end);
    };
    RunOnSmallStack(512 * 1024, [&] {
      EXPECT_NE(Again(nested(kLevelsThatLoad)), "(not loaded)") << name;
      const auto reader = GetParam().newReader();
      EXPECT_FALSE(Load(*reader, nested(1100))) << name;
      EXPECT_EQ(reader->LastError().fault, DocumentFault::kTooDeep) << name;
    });
  }
}

std::string RootOf(const testing::TestParamInfo<StoredDocument>& info) {
  return info.param.root;
}
INSTANTIATE_TEST_SUITE_P(All, StoredDocuments, testing::ValuesIn(kStoredDocuments), RootOf);
INSTANTIATE_TEST_SUITE_P(All, Readers, testing::ValuesIn(kStoredDocuments), RootOf);

}  // namespace vosmere::test::documents
