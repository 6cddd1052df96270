#include "vosmere/collections/colct_node.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/tree.h"
#include "tests/support/wide.h"
#include "vosmere/platform/internal/clock.h"

namespace vosmere::test {
namespace {

std::string Fields(const CColctNetData& net) {
  std::ostringstream all;
  all << Utf8(net.GetOwner()) << '|' << net.IsOrdered() << net.IsForeignColct() << net.IsSynced()
      << net.GetColctExpandState() << '|' << net.GetSharingDomain() << ' ' << net.GetRole() << ' '
      << net.GetPollingInterval() << ' ' << net.GetIssuedTimeEventID();
  return all.str();
}

/// What a collection has beyond a page, its local tree apart.
std::string Fields(const ItemPtr<CColctNode>& colct) {
  std::ostringstream all;
  all << Utf8(colct->GetUrl()) << '|' << colct->GetColctType() << ' ' << colct->HasNewData() << ' '
      << colct->GetLoadingState() << ' ' << colct->GetLastModified() << '|'
      << Fields(*colct->GetColctNetData());
  return all.str();
}

TEST(ColctNode, CopyNamesTheSameLocalTreeButHasItsOwnNetworkSide) {
  const TreePtr local = Tree("local(a b)");
  SetClockForTesting([]() -> LONG { return 1000; });
  auto source = New<CColctNode>();
  SetClockForTesting(nullptr);
  EXPECT_EQ(Fields(source), "about:blank|1 0 0 1000|(null)|0000|-1 0 20 0");
  source->SetUrl(W("u"));
  source->SetColctType(static_cast<tagCOLCTTYPE>(7));
  source->SetLocRNodeRoot(local);
  source->SetHasNewData(true);
  source->SetLoadingState(2);
  source->GetNodeStat()->SetStatTime(1, 9, 3, ~0u);
  CColctNetData* const net = source->GetColctNetData();
  net->SetOwner(W("owner"));
  net->SetOrdered(true);
  net->SetBeForeignColct(true);
  net->SetSynced(true);
  net->SetColctExpandState(true);
  net->SetSharingDomain(1);
  net->SetRole(2);
  net->SetPollingInterval(5);
  net->SetIssuedTimeEventID(6);
  CColctNetData assigned;
  assigned = *net;

  const auto copy = Copy(source);
  EXPECT_NE(copy->GetColctNetData(), net);
  source.reset();
  EXPECT_EQ(Fields(copy), "u|7 1 2 9|owner|1111|1 2 5 6");
  EXPECT_EQ(Fields(assigned), "owner|1111|1 2 5 6");
  EXPECT_EQ(copy->GetLocRNodeRoot(), local);
  EXPECT_TRUE(copy->IsNetSynced());
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
  EXPECT_EQ(Utf8(colct->GetDescription()), "text");
  EXPECT_EQ(Utf8(colct->GetUUID()), "identity") << "one unit is no identity";
  int state = 0;
  colct->HasCheckedIn(&state);
  EXPECT_EQ(state, 5);
  EXPECT_EQ(colct->GetBaseBuild(), 6);
  EXPECT_EQ(Utf8(colct->GetUrl()), "about:blank");

  file->SetName(nullptr);
  file->SetUUID(W("xy"));
  colct->SetPropertiesFromColctFileNode(file.get());
  EXPECT_EQ(Utf8(colct->GetName()), "name");
  EXPECT_EQ(Utf8(colct->GetUUID()), "xy");
}

TEST(ColctNetData, OwnerStaysOnAssignmentFromAnOwnerlessSource) {
  CColctNetData data;
  data.SetOwner(W("owner"));
  data = CColctNetData();
  EXPECT_EQ(Utf8(data.GetOwner()), "owner");
}

TEST(ColctNetData, PollsAtLeastEvery4) {
  CColctNetData data;
  for (const int interval : {5, 4, 3, -2147483647 - 1}) {
    data.SetPollingInterval(interval);
    EXPECT_EQ(data.GetPollingInterval(), interval == 5 ? 5 : 4);
  }
}

}  // namespace
}  // namespace vosmere::test
