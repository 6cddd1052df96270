#include "vosmere/nodes/base_node.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/tree.h"
#include "tests/support/wide.h"
#include "vosmere/platform/clock.h"

namespace vosmere::test {
namespace {

using Times = std::vector<LONG>;

Times TimesOf(CNodeStat* stat) {
  LONG added = 0, modified = 0, lastVisited = 0;
  stat->GetStatTime(&added, &modified, &lastVisited);
  return {added, modified, lastVisited};
}

TEST(NodeStat, StartsWithOneReadingOfTheClock) {
  static LONG reading;
  reading = 1000;
  SetClockForTesting([] { return reading++; });
  CNodeStat stat;
  SetClockForTesting(nullptr);
  EXPECT_EQ(TimesOf(&stat), (Times{1000, 1000, 1000}));
  EXPECT_FALSE(stat.IsUnread());
  EXPECT_EQ(stat.GetFlag(), 0);
}

TEST(NodeStat, SetsOnlyTheTimesInTheMask) {
  for (ULONG mask = 0; mask < 8; ++mask) {
    CNodeStat stat;
    stat.SetStatTime(1, 2, 3, ~0u);
    stat.SetStatTime(-10, -20, -30, mask);
    EXPECT_EQ(TimesOf(&stat), (Times{mask & 1 ? -10 : 1, mask & 2 ? -20 : 2, mask & 4 ? -30 : 3}));
  }
}

TEST(NodeStat, StoresOnlyWhereThereIsAPointer) {
  CNodeStat stat;
  stat.SetStatTime(1, 2, 3, ~0u);
  LONG modified = 0;
  stat.GetStatTime(nullptr, &modified, nullptr);
  EXPECT_EQ(modified, 2);
}

TEST(BaseNode, StartsEmptyAndCheckedIn) {
  const auto node = New<CFolderNode>();
  EXPECT_EQ(Utf8(node->GetName()), "");
  EXPECT_EQ(Utf8(node->GetDescription()), "");
  EXPECT_EQ(Utf8(node->GetUUID()), "");
  EXPECT_EQ(node->GetVersion(), 1);
  EXPECT_EQ(node->GetOrder(), 1);
  EXPECT_EQ(node->GetBaseBuild(), 0);
  EXPECT_EQ(node->GetNodeData(), 0u);
  EXPECT_FALSE(node->IsDeleted());
  EXPECT_EQ(node->GetRNode(), nullptr);
  int state = 0;
  EXPECT_TRUE(node->HasCheckedIn(&state));
  EXPECT_EQ(state, 2);
}

TEST(BaseNode, NullNameStaysNullButNullDescriptionIsEmpty) {
  const auto node = New<CFolderNode>();
  node->SetName(W("name"));
  node->SetDescription(W("text"));
  node->SetName(nullptr);
  node->SetDescription(nullptr);
  EXPECT_EQ(node->GetName(), nullptr);
  EXPECT_EQ(Utf8(node->GetDescription()), "");
  EXPECT_EQ(Copy(node)->GetName(), nullptr);
}

TEST(BaseNode, TextsAreCopiedAlsoFromTheItemItself) {
  const auto node = New<CFolderNode>();
  Wide name = W("Straße 😀");
  node->SetName(name);
  name = W("other");
  EXPECT_EQ(Utf8(node->GetName()), "Straße 😀");
  node->SetName(node->GetName() + 1);
  EXPECT_EQ(Utf8(node->GetName()), "traße 😀");
}

TEST(BaseNode, IdentityIsCutTo36Units) {
  const auto node = New<CFolderNode>();
  for (const std::size_t length : {0, 1, 35, 36, 37, 40, 100000}) {
    node->SetUUID(Repeated(length));
    EXPECT_EQ(Utf8(node->GetUUID()), std::string(std::min<std::size_t>(length, 36), 'x'));
  }
  node->SetUUID(W("0123456789"));
  node->SetUUID(node->GetUUID() + 1);
  EXPECT_EQ(Utf8(node->GetUUID()), "123456789");
  node->SetUUID(nullptr);
  EXPECT_EQ(Utf8(node->GetUUID()), "");
}

TEST(BaseNode, OnlyState2IsCheckedIn) {
  const auto node = New<CFolderNode>();
  for (const int state : {0, 1, 3, -2}) {
    node->SetCheckedIn(state);
    int raw = 99;
    EXPECT_FALSE(node->HasCheckedIn(&raw));
    EXPECT_EQ(raw, state);
    EXPECT_FALSE(node->HasCheckedIn(nullptr));
  }
}

TEST(BaseNode, CopyTakesEverythingButTheLink) {
  const TreePtr tree = Folder("name");
  CBaseNode* const source = tree->item;
  source->SetDescription(W("text"));
  source->SetUUID(W("identity"));
  source->SetVersion(2);
  source->SetOrder(3);
  source->SetCheckedIn(4);
  source->SetBaseBuild(5);
  source->SetAsDeleted(true);
  source->SetNodeData(6);
  source->GetNodeStat()->SetStatTime(7, 8, 9, ~0u);
  source->GetNodeStat()->MarkAsUnread(true);
  source->GetNodeStat()->SetFlag(10);

  const ItemPtr<CFolderNode> copy(CFolderNode::New(static_cast<CFolderNode*>(source)));
  source->SetName(W("changed"));
  EXPECT_EQ(Utf8(copy->GetName()), "name");
  EXPECT_EQ(Utf8(copy->GetDescription()), "text");
  EXPECT_EQ(Utf8(copy->GetUUID()), "identity");
  int state = 0;
  EXPECT_FALSE(copy->HasCheckedIn(&state));
  EXPECT_EQ((std::vector<int>{copy->GetVersion(), copy->GetOrder(), state, copy->GetBaseBuild()}),
            (std::vector<int>{2, 3, 4, 5}));
  EXPECT_TRUE(copy->IsDeleted());
  EXPECT_EQ(copy->GetNodeData(), 6u);
  EXPECT_EQ(TimesOf(copy->GetNodeStat()), (Times{7, 8, 9}));
  EXPECT_TRUE(copy->GetNodeStat()->IsUnread());
  EXPECT_EQ(copy->GetNodeStat()->GetFlag(), 10);
  EXPECT_EQ(copy->GetRNode(), nullptr);
}

TEST(TreeLink, NewLeavesTheBackLinkAloneAndNew2SetsIt) {
  const auto item = New<CFolderNode>();
  RNode* const first = RNode::New(item.get(), NT_FOLDER);
  EXPECT_TRUE(IsDetached(first));
  EXPECT_EQ(first->firstChild, nullptr);
  EXPECT_EQ(first->GetExtData(), 0u);
  EXPECT_EQ(item->GetRNode(), nullptr);
  RNode* const second = RNode::New2(item.get(), NT_FOLDER);
  EXPECT_EQ(item->GetRNode(), second);
  RNode::Delete(first);
  RNode::Delete(second);
  EXPECT_EQ(Utf8(item->GetName()), "") << "a destroyed link leaves its item alive";
}

TEST(TreeLink, MayHoldNoItem) {
  RNode* const link = RNode::New2(nullptr, NT_URL);
  EXPECT_EQ(link->item, nullptr);
  RNode::Delete(link);
  RNode::Delete(nullptr);
  CBaseNode::Delete(nullptr);
}

}  // namespace
}  // namespace vosmere::test
