// What the node model does when memory runs out, at every allocation in turn.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/colct_list.h"
#include "tests/support/failing_memory.h"
#include "tests/support/tree.h"
#include "tests/support/wide.h"
#include "vosmere/nodes/colct_ex_data.h"
#include "vosmere/nodes/colct_item_id.h"
#include "vosmere/nodes/colct_tool.h"
#include "vosmere/nodes/list.h"
#include "vosmere/nodes/name_value_pair.h"

namespace vosmere::test {
namespace {

/// Calls `make` with its first, second, ... allocation failing until none does. Each failing call
/// must give null.
template <class Make, class Free>
void ExpectNullAtEachFailure(Make make, Free free) {
  for (int successes = 0;; ++successes) {
    ASSERT_LT(successes, 1000);
    const long before = LiveAllocations();
    decltype(make()) made = nullptr;
    bool failed = false;
    {
      const FailingMemory memory(successes);
      made = make();
      failed = memory.Failed();
    }
    EXPECT_EQ(made == nullptr, failed) << "after " << successes;
    free(made);
    EXPECT_EQ(LiveAllocations(), before) << "after " << successes;
    if (!failed) break;
  }
}

TEST(NoMemory, EveryNewGivesNullAndLeaksNothing) {
  ExpectNullAtEachFailure([] { return CFolderNode::New(); }, CBaseNode::Delete);
  ExpectNullAtEachFailure([] { return CUrlNode::New(); }, CBaseNode::Delete);
  ExpectNullAtEachFailure([] { return CColctNode::New(); }, CBaseNode::Delete);
  ExpectNullAtEachFailure([] { return RNode::New(nullptr, NT_URL); }, RNode::Delete);
  ExpectNullAtEachFailure([] { return RColctItem::New(nullptr); }, RColctItem::Delete);
  ExpectNullAtEachFailure([] { return CColctItemID::New(); }, CColctItemID::Delete);
  ExpectNullAtEachFailure([] { return CColctExData::New(); }, CColctExData::Delete);
  ExpectNullAtEachFailure([] { return CNameValuePair::New(); }, CNameValuePair::Delete);
  const Wide tag = W("tag");
  ExpectNullAtEachFailure([&] { return CUrlProp::CreateRBstrItem(tag); },
                          CUrlProp::DeleteOneRBstrItem);
}

TEST(NoMemory, EveryCopyGivesNullAndLeaksNothing) {
  const TreePtr colct(NewLink(NT_COLCT, "name"));
  auto* const source = static_cast<CColctNode*>(colct->item);
  source->SetDescription(W("text"));
  source->SetAuthor(W("author"));
  source->SetRelationUrl(W("relation"));
  source->GetColctNetData()->SetOwner(W("owner"));
  source->GetUrlProp()->SetFileExtension(W("pdf"));
  Wide tags = W("a b c");
  source->GetUrlProp()->SetTagsList(
      CUrlProp::GenerateRBstrItemList(const_cast<WChar*>(tags.get())));
  ExpectNullAtEachFailure([=] { return CUrlNode::New(source); }, CBaseNode::Delete);
  ExpectNullAtEachFailure([=] { return CColctNode::New(source); }, CBaseNode::Delete);
}

TEST(NoMemory, AFailedLinkClearsTheItemsBackLink) {
  const TreePtr page = Page("a");
  {
    const FailingMemory memory(0);
    EXPECT_EQ(RNode::New2(page->item, NT_URL), nullptr);
  }
  EXPECT_EQ(page->item->GetRNode(), nullptr);
}

TEST(NoMemory, SettersKeepTheOldText) {
  const auto page = New<CUrlNode>();
  const Wide old = W("old"), fresh = W("fresh");
  const auto setAll = [&page](const Wide& text) {
    page->SetName(text);
    page->SetDescription(text);
    page->SetAuthor(text);
    page->SetUrl(text);
  };
  setAll(old);
  {
    const FailingMemory memory(0);
    setAll(fresh);
    EXPECT_EQ(page->GetUrlProp(), nullptr);
  }
  for (const WChar* text : {page->GetName(), page->GetDescription(), page->GetAuthor()})
    EXPECT_EQ(Utf8(text), "old");
  EXPECT_EQ(Utf8(page->GetUrl()), kSystemStringsFail ? "old" : "fresh");
  EXPECT_NE(page->GetUrlProp(), nullptr);
}

TEST(NoMemory, ATreeCopyEndsEarlyAndIsValid) {
  TreePtr tree = Tree("root(a b(c d(e) f) g)");
  const std::string whole = "copy(a b(c d(e) f) g)";
  std::string shape;
  for (int successes = 0; shape != whole; ++successes) {
    ASSERT_LT(successes, 1000);
    TreePtr copy = Folder("copy");
    {
      const FailingMemory memory(successes);
      RNTool::AddAllFolderChildren(copy, tree);
    }
    shape = Shape(copy);
    EXPECT_EQ(shape.find("BROKEN"), std::string::npos) << shape;
  }
}

TEST(NoMemory, TagsEndEarly) {
  std::size_t count = 0;
  for (int successes = 0; count < 3; ++successes) {
    ASSERT_LT(successes, 1000);
    const Wide text = W("a b c");
    const long before = LiveAllocations();
    CUrlProp::TagList* tags = nullptr;
    {
      const FailingMemory memory(successes);
      tags = CUrlProp::GenerateRBstrItemList(const_cast<WChar*>(text.get()));
    }
    count = 0;
    for (const auto* tag = tags; tag; tag = tag->next)
      EXPECT_EQ(Utf8(tag->data), std::string(1, static_cast<char>('a' + count++)));
    CUrlProp::DeleteTagsList(tags);
    EXPECT_EQ(LiveAllocations(), before);
  }
}

TEST(NoMemory, MergingListsStillWorks) {
  ColctList old("a b c"), fresh("b"), removed;
  {
    const FailingMemory memory(0);
    CRColctTool().UpdateRColctItemList(fresh.head, &old.head, &removed.head);
  }
  EXPECT_EQ(old.Urls(), "b");
  EXPECT_EQ(removed.Urls(), "a c");
  EXPECT_TRUE(fresh["b"]->mark);
}

TEST(NoMemory, LookingForDuplicatesStopsButLosesNothing) {
  ColctList list("x y x");
  {
    const FailingMemory memory(0);
    EXPECT_FALSE(CRColctTool().DeleteDuplcateColct(list.head));
  }
  EXPECT_EQ(list.Urls(), "x y x");
}

}  // namespace
}  // namespace vosmere::test
