#include "vosmere/pages/note_html.h"

#include <gtest/gtest.h>

#include "tests/support/failing_memory.h"
#include "tests/support/files.h"
#include "tests/support/platform.h"
#include "tests/support/tree.h"
#include "vosmere/base/internal/no_memory.h"
#include "vosmere/tree/url_node.h"

namespace vosmere::test {
namespace {

class NoteHtml : public testing::Test {
 protected:
  NoteHtml() { note->GetNodeStat()->SetStatTime(1, 0, 2, 7); }

  std::string Written() {
    EXPECT_TRUE(CWriteNoteHtml().WriteToFile(note.get(), W(folder / "note.html")));
    return ReadBytes(folder / "note.html");
  }

  const Zone zone{"PST8"};
  const TempFolder folder;
  const ItemPtr<CUrlNode> note{CUrlNode::New()};
};

TEST_F(NoteHtml, IsWrittenByteForByteWithoutEscapingOrAnEnd) {
  note->SetName(W("Größe <b>& mehr"));
  note->SetDescription(W("<p>Text\r\n</div>"));
  EXPECT_EQ(Written(), TestData("note.html"));
}

TEST_F(NoteHtml, NothingIsLeftOutButTheTexts) {
  note->SetName(nullptr);
  EXPECT_EQ(Written(),
            "<html><META http-equiv=Content-Type content=\"text/html; charset=unicode\"><title>"
            "</title><body><font size=+1>&nbsp;<p><b></b></font><br><hr "
            "style=\"color:'#bbc';height:'1'\"><br><div></div><p><font size=-1>"
            "Wed, 31 Dec 1969 16:00:00 +0800</font></body><html>");
}

TEST_F(NoteHtml, WithoutAFileItIsFalseAndWithoutMemoryTheOldOneStays) {
  EXPECT_FALSE(CWriteNoteHtml().WriteToFile(note.get(), W(folder / "no" / "note.html")));
  EXPECT_FALSE(CWriteNoteHtml().WriteToFile(note.get(), nullptr));
  EXPECT_FALSE(CWriteNoteHtml().WriteToFile(nullptr, W(folder / "none.html")));
  EXPECT_FALSE(std::filesystem::exists(folder / "none.html"));
  const std::string old = Written();
  const Wide path = W(folder / "note.html");
  const auto write = [&] {
    return CWriteNoteHtml().WriteToFile(note.get(), path) ? "written" : nullptr;
  };
  const auto check = [&](const char* written, bool failed) {
    EXPECT_EQ(written == nullptr, failed);
    EXPECT_EQ(ReadBytes(folder / "note.html"), old);
  };
  AtEachFailure([&] { return NullIfNoMemory(write); }, check, Failures::kOne);
}

}  // namespace
}  // namespace vosmere::test
