#include "vosmere/tree/base_node.h"

#include <algorithm>
#include <sstream>

#include "tests/support/test.h"
#include "tests/support/tree.h"
#include "vosmere/platform/internal/clock.h"

namespace vosmere::test::base_node {

std::string Times(const CNodeStat& stat) {
  LONG added = 0, modified = 0, lastVisited = 0;
  stat.GetStatTime(&added, &modified, &lastVisited);
  stat.GetStatTime(nullptr, nullptr, nullptr);
  std::ostringstream times;
  times << added << ' ' << modified << ' ' << lastVisited;
  return times.str();
}

/// Everything but the link.
std::string Fields(CBaseNode* node) {
  int state = 0;
  node->HasCheckedIn(&state);
  const CNodeStat* const stat = node->GetNodeStat();
  std::ostringstream all;
  all << Utf8(node->GetName()) << '|' << Utf8(node->GetDescription()) << '|'
      << Utf8(node->GetUUID()) << '|' << node->GetVersion() << ' ' << node->GetOrder() << ' '
      << state << ' ' << node->GetBaseBuild() << ' ' << node->IsDeleted() << ' '
      << node->GetNodeData() << '|' << Times(*stat) << ' ' << stat->IsUnread() << ' '
      << stat->GetFlag();
  return all.str();
}

TEST(NodeStat, SetsOnlyTheTimesInTheMask) {
  const char* const expected[] = {"1 2 3",  "-1 2 3",  "1 -2 3",  "-1 -2 3",
                                  "1 2 -3", "-1 2 -3", "1 -2 -3", "-1 -2 -3"};
  for (ULONG mask = 0; mask < 8; ++mask) {
    CNodeStat stat;
    stat.SetStatTime(1, 2, 3, ~0u);
    stat.SetStatTime(-1, -2, -3, mask);
    EXPECT_EQ(Times(stat), expected[mask]);
    CNodeStat fresh;
    fresh.SetStatTime(1, 2, 3, mask);
    EXPECT_EQ(CNodeStat(fresh).GetSetTimes(), mask);
  }
}

TEST(BaseNode, StartsWithOneReadingOfTheClockAndCopiesEverythingButTheLink) {
  static LONG reading;
  reading = 1000;
  SetClockForTesting([] { return reading++; });
  const TreePtr tree = Folder("");
  SetClockForTesting(nullptr);
  auto* const source = static_cast<CFolderNode*>(tree->item);
  EXPECT_EQ(Fields(source), "|||1 1 2 0 0 0|1000 1000 1000 0 0");

  source->SetName(W("name"));
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
  const ItemPtr<CFolderNode> copy(CFolderNode::New(source));
  source->SetName(W("changed"));
  EXPECT_EQ(Fields(copy.get()), "name|text|identity|2 3 4 5 1 6|7 8 9 1 10");
  EXPECT_EQ(copy->GetRNode(), nullptr);
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

TEST(BaseNode, IdentityIsCutTo36Units) {
  const auto node = New<CFolderNode>();
  for (const std::size_t length : {0, 1, 36, 37, 100000}) {
    node->SetUUID(Repeated(length));
    EXPECT_EQ(Utf8(node->GetUUID()), std::string(std::min<std::size_t>(length, 36), 'x'));
  }
  node->SetUUID(nullptr);
  EXPECT_EQ(Utf8(node->GetUUID()), "");
}

TEST(BaseNode, TextsMayComeFromTheItemItself) {
  const auto node = New<CFolderNode>();
  node->SetName(W("Straße 😀"));
  node->SetName(node->GetName() + 1);
  EXPECT_EQ(Utf8(node->GetName()), "traße 😀");
  node->SetUUID(W("0123456789"));
  node->SetUUID(node->GetUUID() + 1);
  EXPECT_EQ(Utf8(node->GetUUID()), "123456789");
}

TEST(BaseNode, OnlyState2IsCheckedIn) {
  const auto node = New<CFolderNode>();
  for (const int state : {0, 1, 2, 3, -2}) {
    node->SetCheckedIn(state);
    EXPECT_EQ(node->HasCheckedIn(nullptr), state == 2) << state;
  }
}

TEST(TreeLink, NewLeavesTheBackLinkAloneAndNew2SetsIt) {
  const auto item = New<CFolderNode>();
  RNode* const first = RNode::New(item.get(), NT_FOLDER);
  EXPECT_TRUE(IsDetached(first));
  EXPECT_EQ(item->GetRNode(), nullptr);
  RNode* const second = RNode::New2(item.get(), NT_FOLDER);
  EXPECT_EQ(item->GetRNode(), second);
  for (RNode* link : {first, second, RNode::New2(nullptr, NT_URL)}) RNode::Delete(link);
  EXPECT_EQ(Utf8(item->GetName()), "") << "a destroyed link leaves its item alive";
}

}  // namespace vosmere::test::base_node
