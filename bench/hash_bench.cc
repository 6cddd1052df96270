// Benchmarks of looking up keys in CHashtable, compared with std::unordered_map, for tables of
// several sizes and three kinds of keys: random ones, ones with a common beginning and ending, and
// short numbers.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "vosmere/tabs/hash_table.h"

namespace vosmere::bench {
namespace {

enum Shape { kRandom, kCommonEnding, kShort };

std::vector<std::u16string> Keys(int count, int shape) {
  std::minstd_rand random(1);
  std::vector<std::u16string> keys(count);
  for (int i = 0; i < count; ++i) {
    const std::string digits = std::to_string(i);
    const std::u16string number(digits.begin(), digits.end());
    if (shape == kShort) keys[i] = number;
    if (shape == kCommonEnding) keys[i] = u"http://" + number + u".example/index.html";
    if (shape == kRandom)
      for (auto left = 8 + random() % 24; left > 0; --left)
        keys[i] += static_cast<char16_t>('a' + random() % 26);
  }
  std::shuffle(keys.begin(), keys.end(), random);
  return keys;
}

const WChar* Text(const std::u16string& text) {
  return reinterpret_cast<const WChar*>(text.c_str());
}

void Vosmere(benchmark::State& state) {
  const auto keys = Keys(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  CHashtable table;
  for (const auto& key : keys) table.Put(Text(key), Text(key), false);
  for (auto _ : state)
    for (const auto& key : keys) benchmark::DoNotOptimize(table.Contains(Text(key)));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void UnorderedMap(benchmark::State& state) {
  const auto keys = Keys(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  std::unordered_map<std::u16string, std::u16string> map;
  for (const auto& key : keys) map.emplace(key, key);
  for (auto _ : state)
    for (const auto& key : keys) benchmark::DoNotOptimize(map.find(key));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"keys", "shape"});
  for (const int shape : {kRandom, kCommonEnding, kShort})
    for (const int count : {4, 20, 200, 2000, 20000}) benchmark->Args({count, shape});
}

BENCHMARK(Vosmere)->Name("HashLookup/vosmere")->Apply(Sizes);
BENCHMARK(UnorderedMap)->Name("HashLookup/unordered_map")->Apply(Sizes);

}  // namespace
}  // namespace vosmere::bench
