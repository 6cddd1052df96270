#include "vosmere/tabs/hash_table.h"

#include <map>
#include <random>

#include "tests/support/test.h"

namespace vosmere::test::hash_table {

struct Table : CHashtable {
  using CHashtable::CHashtable;
  using CHashtable::HashString;

  std::string At(const Wide& key) const {
    WChar* value = nullptr;
    const bool found = Get(key, &value);
    const OwnedBstr owned(value);
    return found ? owned.utf8() : "(missing)";
  }

  /// The rest of the iteration.
  std::string Walk() {
    std::string walk;
    while (HasNext()) {
      WChar *key = nullptr, *value = nullptr;
      EXPECT_TRUE(GetNextKeyValue(&key, &value));
      walk += OwnedBstr(key).utf8() + "=" + OwnedBstr(value).utf8() + " ";
    }
    return walk;
  }
};

TEST(HashTable, TheHashOfAKeyIsItsBucket) {
  struct {
    int buckets;
    Wide key;
    int bucket;
  } const cases[] = {{7, W("ab"), 122 % 7},
                     {7, W("aaaaaaaaab"), 130 % 7},
                     {1000000, W(u"\uFFFF\uFFFF"), (0xFFFF >> 2) + 0xFFFF},
                     {23, W(""), 0},
                     {0, W("key"), 0},
                     {-5, W("key"), 0}};
  for (const auto& c : cases) EXPECT_EQ(Table(c.buckets).HashString(c.key), c.bucket);
  EXPECT_EQ(Table().HashString(W("c")), 'c' % 23);
}

TEST(HashTable, WalksByBucketAndTheNewestFirst) {
  Table table(2);
  for (const char* const key : {"a", "b", "c", "d"}) table.Put(W(std::string(key)), W("1"), false);
  EXPECT_FALSE(table.HasNext()) << "until the walk begins";
  table.ResetPosition();
  EXPECT_EQ(table.Walk(), "d=1 b=1 c=1 a=1 ");
  WChar key = 0, *keyOut = &key, *valueOut = &key;
  EXPECT_FALSE(table.GetNextKeyValue(&keyOut, &valueOut));
  EXPECT_TRUE(keyOut == nullptr && valueOut == nullptr);

  table.ResetPosition();
  EXPECT_TRUE(table.GetNextKeyValue(nullptr, nullptr));
  table.Remove(W("d"));  // already visited
  table.Remove(W("b"));  // the next to be visited
  EXPECT_EQ(table.Walk(), "c=1 a=1 ");

  table.ResetPosition();
  table.RemoveAll();
  EXPECT_FALSE(table.HasNext()) << "a removed entry is never handed out";
  EXPECT_EQ(table.GetTotalItems(), 0);
}

TEST(HashTable, HoldsWhatAMapHolds) {
  std::mt19937 random(3);
  std::map<std::string, std::string> map;
  Table table(3);
  for (int round = 0; round < 6000; ++round) {
    const std::string key = random() % 8 ? std::to_string(random() % 400)
                                         : std::string(round % 3, "kK"[random() % 2]),
                      value = std::to_string(round);
    const Wide stored = random() % 4 ? W(value) : nullptr;
    if (random() % 2) {
      EXPECT_EQ(table.Remove(W(key)), map.erase(key) == 1);
    } else {
      const bool overwrite = random() % 2, isNew = !map.contains(key);
      EXPECT_EQ(table.Put(W(key), stored, overwrite), isNew) << "replacing a value adds no entry";
      if (isNew || overwrite) map[key] = Utf8(stored);
    }
    ASSERT_EQ(table.GetTotalItems(), static_cast<int>(map.size()));
    EXPECT_EQ(table.At(W(key)), map.contains(key) ? map[key] : "(missing)");
  }
  EXPECT_FALSE(table.Put(nullptr, W("v"), true) || table.Remove(nullptr));
  EXPECT_EQ(table.At(nullptr), "(missing)");
}

TEST(HashTable, WithoutMemoryNothingChangesAndNothingIsLost) {
  const Wide key = W("key"), value = W("value");
  auto table = std::make_unique<Table>();
  unsigned long lost = 0;
  const auto put = [&] {
    lost = LostTexts();
    const bool added = table->Put(key, value, false);
    lost = LostTexts() - lost;
    return added ? table.get() : nullptr;
  };
  AtEachFailure(put, [&](Table* added, bool failed) {
    EXPECT_EQ(added == nullptr, failed);
    EXPECT_EQ(lost, failed ? 1u : 0u);
    EXPECT_EQ(table->Remove(key), !failed);
    table = std::make_unique<Table>();  // a new table, which has no room for an entry yet
  });
  if (!kSystemStringsFail) return;
  table->Put(key, value, false);
  table->ResetPosition();
  lost = LostTexts();
  WChar *keyOut = nullptr, *valueOut = nullptr;
  {
    const FailingMemory memory(1);
    EXPECT_FALSE(table->GetNextKeyValue(&keyOut, &valueOut));
    EXPECT_FALSE(table->Get(key, &valueOut));
    table->Put(key, key, true);
    EXPECT_EQ(LostTexts() - lost, 3u);
  }
  EXPECT_EQ(keyOut, nullptr);
  EXPECT_EQ(table->Walk(), "key=value ");
}

}  // namespace vosmere::test::hash_table
