// What holds for every stored document.
#include "tests/support/stored_documents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/document.h"
#include "tests/support/failing_memory.h"
#include "tests/support/platform.h"

namespace vosmere::test {
namespace {

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

class StoredDocuments : public testing::TestWithParam<StoredDocument> {
 protected:
  std::string Again(const std::string& bytes) { return Rewritten(GetParam(), bytes); }
  /// A document that says nothing.
  std::string Nothing() { return Again(InRoot(" ")); }
  /// What is written when there is nothing, which may be a document that says so.
  testing::Matcher<std::string> IsNothing() { return testing::AnyOf("(null)", Nothing()); }
  std::string InRoot(const std::string& content) {
    return "<" + root + ">" + content + "</" + root + ">";
  }
  /// The golden document with attributes and texts of so many characters.
  std::string Filled(std::size_t length) {
    const auto fill = [=](const std::string&) { return std::string(length, 'x'); };
    const std::string body = golden.substr(golden.find('<', 1));
    return Between(Between(body, "\"", "\"", Any, fill), ">", "<", Any, fill);
  }

  const std::string golden = TestData(GetParam().golden);
  const std::string root = GetParam().root;
};

TEST_P(StoredDocuments, AreReadBack) {
  ASSERT_NE(Again(golden), Nothing());
  EXPECT_EQ(Again(Again(golden)), Again(golden));
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
  const Wide units = W(Replaced(golden, "UTF-8", "UTF-16"));
  std::string utf16 = "\xFF\xFE";
  for (std::size_t i = 0; i < units.size(); ++i) {
    utf16 += static_cast<char>(units[i] & 0xFF);
    utf16 += static_cast<char>(units[i] >> 8);
  }
  EXPECT_EQ(Again(utf16), Again(golden));
}

TEST_P(StoredDocuments, AttributesAndTextsMayHaveAMillionCharacters) {
  const std::string written = Again(Filled(1000000));
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
  EXPECT_THAT(OwnedBstr(GetParam().write(*reader)).utf8(), IsNothing());
}

TEST_P(StoredDocuments, UnknownElementsNestAsDeepAsTheParserDoesOnASmallStack) {
  std::string content = "t";
  for (int level = 2; level < kLevelsThatLoad; ++level) content = "<x>" + content + "</x>";
  RunOnSmallStack(512 * 1024, [&] { EXPECT_EQ(Again(InRoot(content)), Nothing()); });
}

TEST_P(StoredDocuments, OutOfMemoryIsAFailedLoadThatLosesNothing) {
  Again(golden);  // what the system allocates once
  const long before = LiveAllocations();
  bool loaded = false;
  for (long successes = 0; !loaded; ++successes) {
    ASSERT_LT(successes, 1000);
    const auto reader = GetParam().newReader();
    const FailingMemory memory(successes);
    loaded = Load(*reader, golden);
    EXPECT_EQ(reader->LastError().fault,
              memory.Failed() ? DocumentFault::kNoMemory : DocumentFault::kNone)
        << successes;
  }
  EXPECT_EQ(LiveAllocations(), before);
}

TEST_P(StoredDocuments, OutOfMemoryIsAFailedSave) {
  const std::string document = Filled(100);  // which no object holds in itself
  WriteAtEachFailure([&] {
    const auto reader = GetParam().newReader();
    return Load(*reader, document) ? GetParam().write(*reader) : nullptr;
  });
}

INSTANTIATE_TEST_SUITE_P(All, StoredDocuments, testing::ValuesIn(kStoredDocuments),
                         [](const auto& info) { return std::string(info.param.root); });

}  // namespace
}  // namespace vosmere::test
