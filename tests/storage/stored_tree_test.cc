// Changes that do not fit a tree, and the checksum.
#include "vosmere/storage/internal/stored_tree.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/support/stored_tree.h"
#include "vosmere/storage/internal/checksum.h"

namespace vosmere::test {
namespace {

/// Records the changes of a tree.
class Recorder : public TreeObserver {
 public:
  explicit Recorder(StoredTree& tree) : tree_(tree) { Observe(tree.root(), this); }
  ~Recorder() override { Observe(tree_.root(), nullptr); }
  void Adding(RNode* parent, RNode* tree, RNode* before) override {
    Keep([&](vosmere::Change& c) { return tree_.DescribeAdding(parent, tree, before, &c); });
  }
  void Moving(RNode* link, RNode* parent, RNode* before) override {
    Keep([&](vosmere::Change& c) { return tree_.DescribeMoving(link, parent, before, &c); });
  }
  void Removing(RNode* link) override {
    StoredTree::Removal removal;
    Keep([&](vosmere::Change& c) { return tree_.DescribeRemoving(link, &c, &removal); });
    tree_.Forget(removal);
  }
  void Changing(RNode* link) override { tree_.TakeFields(link, &before_); }
  void Changed(RNode* link) override {
    Keep([&](vosmere::Change& c) { return tree_.DescribeFields(link, before_, &after_, &c); });
  }
  void Sorting(RNode* folder) override { tree_.TakeOrder(folder, &order_); }
  void Sorted(RNode* folder) override {
    Keep([&](vosmere::Change& c) { return tree_.DescribeSorting(folder, order_, &c); });
  }
  std::vector<vosmere::Change> changes;

 private:
  template <class Describe>
  void Keep(Describe describe) {
    vosmere::Change change;
    if (describe(change)) changes.push_back(std::move(change));
  }
  StoredTree& tree_;
  FieldValues before_, after_;
  std::vector<std::uint64_t> order_;
};

// What an attacker might write: wrong contents with correct checksums.
TEST(StoredTree, MakesNoChangeThatDoesNotFit) {
  std::mt19937 random(3);
  int refused = 0;
  for (int round = 0; round < 40; ++round) {
    StoredTree source, tree;
    source.SetRoot(NewLink(NT_FOLDER, true));
    tree.SetRoot(NewLink(NT_FOLDER, true));
    std::vector<vosmere::Change> changes;
    {
      Recorder recorder(source);
      RandomChanges any(static_cast<unsigned>(round));
      for (int i = 0; i < 40; ++i) any.Change(source.root());
      changes = recorder.changes;
    }
    for (vosmere::Change& change : changes) {
      if (random() % 4 == 0)
        change.bytes[random() % change.bytes.size()] = static_cast<char>(random() % 12);
      const char* problem = nullptr;
      refused += !tree.Make(change.kind, change.bytes, random() % 8 == 0, &problem);
    }
    StoredTree back;
    ASSERT_TRUE(
        tree.DescribeAll([&](std::string_view links) { return back.ReadDescriptions(links); }));
    back.FinishReading();
    EXPECT_TRUE(Dump(back.root()) == Dump(tree.root()));
    EXPECT_EQ(back.count(), tree.count());
  }
  EXPECT_GT(refused, 100);
}

TEST(Checksum, IsTheOneThatEverybodyKnows) {
  EXPECT_EQ(Checksum(0, "123456789", 9), 0xE3069283u);
  EXPECT_EQ(Checksum(Checksum(0, "1234", 4), "56789", 5), 0xE3069283u);
}

}  // namespace
}  // namespace vosmere::test
