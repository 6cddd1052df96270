// Benchmarks of the scheduler, compared with Asio's timers and with a map and a condition variable:
// the time to insert a job, and how late jobs run.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <numeric>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "bench/timers.h"

namespace vosmere::bench {
namespace {

using std::chrono::milliseconds;

constexpr int kLatencySamples = 300;

/// Due times in ascending order, beginning at `first` from now.
std::vector<Due> DuesFrom(milliseconds first, int count) {
  std::vector<Due> dues;
  for (int i = 0; i < count; ++i) dues.push_back(DueIn(first + milliseconds(7 * i)));
  return dues;
}

/// Inserts jobs. A random order is shuffled anew in each round; otherwise the branch predictor
/// would learn it.
template <class Timers>
void Insert(benchmark::State& state, int count, bool random, bool take) {
  std::mt19937 generator(1);
  // A service may only return jobs that are due, so jobs that will be taken are in the past.
  std::vector<Due> dues = DuesFrom(std::chrono::hours(take ? -1 : 1), count);
  std::size_t fired = 0;
  for (auto _ : state) {
    state.PauseTiming();
    if (random) std::shuffle(dues.begin(), dues.end(), generator);
    {
      Timers timers(dues, [&](std::size_t) { ++fired; });
      state.ResumeTiming();
      for (int i = 0; i < count; ++i) timers.Insert(i);
      if (take) timers.TakeAll();
      state.PauseTiming();
    }
    state.ResumeTiming();
  }
  if (take && fired != static_cast<std::size_t>(state.iterations() * count))
    state.SkipWithError("lost events");
}

/// Seconds by which the jobs of `run` were late, sorted.
std::vector<double> Sorted(std::vector<double> late) {
  std::sort(late.begin(), late.end());
  return late;
}

/// The lateness of jobs that are one millisecond apart.
template <class Timers>
std::vector<double> FiringLatency() {
  std::vector<Due> dues;
  for (int i = 0; i < kLatencySamples; ++i) dues.push_back(DueIn(milliseconds(10 + i)));
  std::vector<double> late(kLatencySamples);
  std::atomic<int> fired = 0;
  Timers timers(dues, [&](std::size_t job) {
    late[job] = std::chrono::duration<double>(Steady::now() - dues[job].steady).count();
    ++fired;
  });
  for (int i = 0; i < kLatencySamples; ++i) timers.Insert(i);
  timers.Start();
  while (fired < kLatencySamples) std::this_thread::sleep_for(milliseconds(1));
  return Sorted(late);
}

/// The lateness of jobs that are due at once and are inserted while the service waits for a later
/// one.
template <class Timers>
std::vector<double> WakingLatency() {
  std::vector<double> late(kLatencySamples);
  std::atomic<int> fired = 0;
  Steady::time_point inserted;
  std::vector<Due> dues(kLatencySamples + 1, DueIn(milliseconds(-1)));
  dues.back() = DueIn(std::chrono::hours(1));
  Timers timers(dues, [&](std::size_t job) {
    late[job] = std::chrono::duration<double>(Steady::now() - inserted).count();
    ++fired;
  });
  timers.Insert(kLatencySamples);
  timers.Start();
  for (int i = 0; i < kLatencySamples; ++i) {
    std::this_thread::sleep_for(milliseconds(1));
    inserted = Steady::now();
    timers.Insert(i);
    while (fired <= i) std::this_thread::sleep_for(std::chrono::microseconds(50));
  }
  return Sorted(late);
}

/// Reports the quantile as the time of the iteration, because latency is not the time that the
/// benchmark takes.
void RegisterLatency(const std::string& name, std::vector<double> (*measure)(), double quantile) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [=](benchmark::State& state) {
                                 for (auto _ : state)
                                   state.SetIterationTime(measure()[quantile * kLatencySamples]);
                               })
      ->UseManualTime()
      ->Iterations(1);
}

template <class Timers>
void RegisterAll(const std::string& program) {
  for (const int count : {1000, 10'000, 100'000})
    for (const bool random : {true, false})
      for (const bool take : {false, true}) {
        const std::string name = std::string(take ? "InsertAndTake/" : "Insert/") +
                                 (random ? "random/" : "in_order/") + std::to_string(count) + "/";
        benchmark::RegisterBenchmark((name + program).c_str(), [=](benchmark::State& state) {
          Insert<Timers>(state, count, random, take);
        })->MinTime(0.05);
      }
  RegisterLatency("Fire/p50/" + program, FiringLatency<Timers>, 0.5);
  RegisterLatency("Fire/p99/" + program, FiringLatency<Timers>, 0.99);
  RegisterLatency("Wake/p50/" + program, WakingLatency<Timers>, 0.5);
  RegisterLatency("Wake/p99/" + program, WakingLatency<Timers>, 0.99);
}

[[maybe_unused]] const bool registered = [] {
  RegisterAll<VosmereTimers>("vosmere");
  RegisterAll<AsioTimers>("asio");
  RegisterAll<MapTimers>("multimap");
  return true;
}();

}  // namespace
}  // namespace vosmere::bench
