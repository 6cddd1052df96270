// What the node model does when memory runs out, at every allocation in turn.

#include <utility>

#include "tests/support/colct_list.h"
#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "vosmere/base/list.h"
#include "vosmere/collections/colct_ex_data.h"
#include "vosmere/collections/colct_item_id.h"
#include "vosmere/collections/colct_tool.h"
#include "vosmere/engines/engine_pool.h"
#include "vosmere/tabs/tab_url.h"
#include "vosmere/tabs/url_map.h"
#include "vosmere/tags/tag_store.h"
#include "vosmere/tree/name_value_pair.h"

namespace vosmere::test::no_memory {

TEST(NoMemory, EveryNewGivesNullAndLeaksNothing) {
  ExpectNullAtEachFailure([] { return CFolderNode::New(); }, CBaseNode::Delete);
  ExpectNullAtEachFailure([] { return CUrlNode::New(); }, CBaseNode::Delete);
  ExpectNullAtEachFailure([] { return CColctNode::New(); }, CBaseNode::Delete);
  ExpectNullAtEachFailure([] { return RNode::New(nullptr, NT_URL); }, RNode::Delete);
  ExpectNullAtEachFailure([] { return RColctItem::New(nullptr); }, RColctItem::Delete);
  ExpectNullAtEachFailure([] { return CColctItemID::New(); }, CColctItemID::Delete);
  ExpectNullAtEachFailure([] { return CColctExData::New(); }, CColctExData::Delete);
  ExpectNullAtEachFailure([] { return CNameValuePair::New(); }, CNameValuePair::Delete);
  ExpectNullAtEachFailure([] { return CEngineNode::New(); }, CBaseNode::Delete);
  ExpectNullAtEachFailure([] { return CEnginePool::New(); }, CBaseNode::Delete);
  ExpectNullAtEachFailure([] { return REngineItem::New(nullptr); }, REngineItem::Delete);
  const Wide tag = W("tag");
  ExpectNullAtEachFailure([&] { return CUrlProp::CreateRBstrItem(tag); },
                          CUrlProp::DeleteOneRBstrItem);
  ExpectNullAtEachFailure([] { return CTagStore::CreateTagGroup(); }, CTagStore::DeleteTagGroup);
  ExpectNullAtEachFailure([] { return CTagStore::CreateTagItem(); }, CTagStore::DeleteTagItem);
  ExpectNullAtEachFailure([&] { return CUrlMapItem::New(tag, nullptr); }, CUrlMapItem::Delete);
  ExpectNullAtEachFailure([&] { return CTabUrlItem::New(tag, 0); }, CTabUrlItem::DeleteList);
}

TEST(NoMemory, ATreeCopyIsWholeOrNothingAndCounted) {
  const TreePtr tree = Tree("root(a b(c d(e) f) g)"), folder = Folder("copy");
  const auto copy = [&] {
    const unsigned long lostBefore = LostTexts();
    RNTool::AddAllFolderChildren(folder, tree);
    return LostTexts() == lostBefore ? &folder : nullptr;
  };
  AtEachFailure(copy, [&](const TreePtr* copied, bool failed) {
    EXPECT_EQ(copied == nullptr, failed);
    EXPECT_EQ(Shape(folder), failed ? "copy()" : "copy(a b(c d(e) f) g)");
    for (RNode* const link : chain::Cells(std::exchange(folder->firstChild, nullptr)))
      DeleteTree(link);
  });
}

TEST(NoMemory, MergingListsAndLookingForDuplicatesNeedNone) {
  ColctList old("a b c"), fresh("b"), removed, doubled("x y x z y");
  {
    const FailingMemory memory(1);
    CRColctTool().UpdateRColctItemList(fresh.head, &old.head, &removed.head);
    EXPECT_TRUE(CRColctTool().DeleteDuplcateColct(doubled.head));
  }
  EXPECT_EQ(old.Urls(), "b");
  EXPECT_EQ(removed.Urls(), "a c");
  EXPECT_TRUE(fresh["b"]->mark);
  EXPECT_EQ(doubled.Urls(), "x y z");
}

}  // namespace vosmere::test::no_memory
