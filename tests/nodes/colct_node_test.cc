#include "vosmere/nodes/colct_node.h"

#include <gtest/gtest.h>

#include "tests/support/tree.h"
#include "tests/support/wide.h"

namespace vosmere::test {
namespace {

TEST(ColctNode, StartsWithADefaultNetworkSide) {
  const auto colct = New<CColctNode>();
  EXPECT_EQ(colct->GetColctType(), 1);
  EXPECT_EQ(colct->GetLocRNodeRoot(), nullptr);
  EXPECT_FALSE(colct->HasNewData());
  EXPECT_EQ(colct->GetLoadingState(), 0);
  EXPECT_FALSE(colct->IsNetSynced());
  EXPECT_EQ(Utf8(colct->GetUrl()), "about:blank");
  const CColctNetData* const net = colct->GetColctNetData();
  EXPECT_EQ(net->GetOwner(), nullptr);
  EXPECT_EQ(net->GetSharingDomain(), -1);
  EXPECT_EQ(net->GetPollingInterval(), 20);
  EXPECT_EQ(net->GetRole(), 0);
  EXPECT_EQ(net->GetIssuedTimeEventID(), 0);
  EXPECT_FALSE(net->IsOrdered() || net->IsForeignColct() || net->IsSynced() ||
               net->GetColctExpandState());
}

TEST(ColctNode, LoadingStatesOutOfRangeAreIgnored) {
  const auto colct = New<CColctNode>();
  for (const int state : {-1, 0, 1, 2}) {
    colct->SetLoadingState(state);
    colct->SetLoadingState(3);
    colct->SetLoadingState(-2);
    EXPECT_EQ(colct->GetLoadingState(), state);
  }
}

TEST(ColctNode, LastModifiedIsTheStatisticsModifiedTime) {
  const auto colct = New<CColctNode>();
  colct->GetNodeStat()->SetStatTime(1, 2, 3, ~0u);
  EXPECT_EQ(colct->GetLastModified(), 2);
}

TEST(ColctNode, CopyNamesTheSameLocalTreeButHasItsOwnNetworkSide) {
  const TreePtr local = Tree("local(a b)");
  auto source = New<CColctNode>();
  source->SetUrl(W("u"));
  source->SetColctType(static_cast<tagCOLCTTYPE>(7));
  source->SetLocRNodeRoot(local);
  source->SetHasNewData(true);
  source->SetLoadingState(2);
  source->GetColctNetData()->SetOwner(W("owner"));
  source->GetColctNetData()->SetSynced(true);

  const auto copy = Copy(source);
  EXPECT_NE(copy->GetColctNetData(), source->GetColctNetData());
  source.reset();
  EXPECT_EQ(Utf8(copy->GetUrl()), "u");
  EXPECT_EQ(copy->GetColctType(), 7);
  EXPECT_EQ(copy->GetLocRNodeRoot(), local);
  EXPECT_TRUE(copy->HasNewData());
  EXPECT_EQ(copy->GetLoadingState(), 2);
  EXPECT_EQ(Utf8(copy->GetColctNetData()->GetOwner()), "owner");
  EXPECT_TRUE(copy->IsNetSynced());
}

TEST(ColctNode, TakesFromItsFileWhatTheFileSays) {
  const auto colct = New<CColctNode>();
  const auto file = New<CColctNode>();
  colct->SetUUID(W("identity"));
  file->SetName(W("name"));
  file->SetDescription(W("text"));
  file->SetUUID(W("x"));
  file->SetCheckedIn(5);
  file->SetBaseBuild(6);
  file->SetUrl(W("u"));
  colct->SetPropertiesFromColctFileNode(file.get());
  EXPECT_EQ(Utf8(colct->GetName()), "name");
  EXPECT_EQ(Utf8(colct->GetDescription()), "text");
  EXPECT_EQ(Utf8(colct->GetUUID()), "identity") << "one unit is no identity";
  int state = 0;
  EXPECT_FALSE(colct->HasCheckedIn(&state));
  EXPECT_EQ(state, 5);
  EXPECT_EQ(colct->GetBaseBuild(), 6);
  EXPECT_EQ(Utf8(colct->GetUrl()), "about:blank");

  file->SetName(nullptr);
  file->SetUUID(W("xy"));
  colct->SetPropertiesFromColctFileNode(file.get());
  EXPECT_EQ(Utf8(colct->GetName()), "name");
  EXPECT_EQ(Utf8(colct->GetUUID()), "xy");
}

TEST(ColctNetData, AssignmentCopiesEveryField) {
  CColctNetData source;
  source.SetOrdered(true);
  source.SetOwner(W("owner"));
  source.SetSharingDomain(1);
  source.SetBeForeignColct(true);
  source.SetRole(2);
  source.SetSynced(true);
  source.SetPollingInterval(5);
  source.SetIssuedTimeEventID(6);
  source.SetColctExpandState(true);
  CColctNetData copy;
  copy = source;
  EXPECT_TRUE(copy.IsOrdered() && copy.IsForeignColct() && copy.IsSynced() &&
              copy.GetColctExpandState());
  EXPECT_EQ(Utf8(copy.GetOwner()), "owner");
  EXPECT_EQ(copy.GetSharingDomain(), 1);
  EXPECT_EQ(copy.GetRole(), 2);
  EXPECT_EQ(copy.GetPollingInterval(), 5);
  EXPECT_EQ(copy.GetIssuedTimeEventID(), 6);
}

TEST(ColctNetData, OwnerStaysOnAssignmentFromAnOwnerlessSource) {
  CColctNetData data;
  data.SetOwner(W("owner"));
  data = CColctNetData();
  EXPECT_EQ(Utf8(data.GetOwner()), "owner");
  data.SetOwner(nullptr);
  EXPECT_EQ(data.GetOwner(), nullptr);
}

TEST(ColctNetData, PollsAtLeastEvery4) {
  CColctNetData data;
  for (const int interval : {1, 3, -2147483647 - 1}) {
    data.SetPollingInterval(interval);
    EXPECT_EQ(data.GetPollingInterval(), 4);
  }
  data.SetPollingInterval(5);
  EXPECT_EQ(data.GetPollingInterval(), 5);
}

}  // namespace
}  // namespace vosmere::test
