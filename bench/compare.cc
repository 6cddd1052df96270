// Runs the benchmarks and prints a table that compares this library with its peers.
//
// "Group/vosmere" is compared with every other "Group/<peer>". The times are medians of the
// repetitions. Repetitions of all benchmarks are interleaved, so that a slow phase of the machine
// affects all of them equally.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* kOurs = "vosmere";

class Comparison : public benchmark::ConsoleReporter {
 public:
  Comparison() : ConsoleReporter(OO_None) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      failed_ = failed_ || run.error_occurred;
      if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
      const std::string& name = run.run_name.function_name;
      const std::size_t slash = name.rfind('/');
      if (slash == std::string::npos) continue;
      auto& times = groups_[name.substr(0, slash)][name.substr(slash + 1)];
      times.push_back(Time(run) / benchmark::GetTimeUnitMultiplier(run.time_unit));
    }
  }

  /// Whether any benchmark failed. A failed one is missing from the table.
  bool failed() const { return failed_; }

  void Finalize() override {
    std::printf("\n%-34s %12s %12s  %-12s %8s\n", "ours : peer", "ours", "peer", "", "ratio");
    for (auto& [group, programs] : groups_) {
      const auto ours = programs.find(kOurs);
      if (ours == programs.end()) continue;
      const double our = Median(ours->second);
      for (auto& [peer, times] : programs)
        if (peer != kOurs)
          std::printf("%-34s %9.4g us %9.4g us  %-12s %8.2f\n", group.c_str(), our * 1e6,
                      Median(times) * 1e6, peer.c_str(), our / Median(times));
    }
  }

 private:
  // Processor time if possible, because other programs on the machine only increase the real time.
  static double Time(const Run& run) {
    return run.run_name.time_type.empty() ? run.GetAdjustedCPUTime() : run.GetAdjustedRealTime();
  }
  static double Median(std::vector<double> times) {
    std::nth_element(times.begin(), times.begin() + times.size() / 2, times.end());
    return times[times.size() / 2];
  }

  std::map<std::string, std::map<std::string, std::vector<double>>> groups_;
  bool failed_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> arguments(argv, argv + argc);
  char repetitions[] = "--benchmark_repetitions=5";
  char interleaving[] = "--benchmark_enable_random_interleaving=true";
  arguments.insert(arguments.begin() + 1, {repetitions, interleaving});  // later arguments win
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
  Comparison comparison;
  benchmark::RunSpecifiedBenchmarks(&comparison);
  return comparison.failed() ? 1 : 0;
}
