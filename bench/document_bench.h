// Measuring how documents are loaded and saved.
#pragma once

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "bench/live_bytes.h"
#include "vosmere/cpp/files.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere::bench {

[[noreturn]] inline void Die(const char* what) {
  std::fprintf(stderr, "vosmere_bench: %s\n", what);
  std::exit(1);
}

inline std::string ReadAll(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

inline bool SaveDocument(CWriteXML& writer, const std::filesystem::path& path) {
  return writer.SaveToFile(FilePath(path).get());
}

/// Runs a step and reports its processor time, so that other programs do not affect the result.
template <class Step>
auto Timed(benchmark::State& state, Step step) {
  const std::clock_t start = std::clock();
  const auto result = step();
  benchmark::DoNotOptimize(result);
  state.SetIterationTime(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  return result;
}

/// A program that has just started must first get memory from the system (cold); one that has
/// loaded documents before has a heap that it can reuse (warm).
enum class Heap { kCold, kWarm };

/// Measures loading. The result is freed between the measurements.
template <class Load, class Free>
void MeasureLoad(benchmark::State& state, const std::string& document, Heap heapState, Load load,
                 Free free) {
  std::size_t peak = 0;
  {
    const HeapCount heap;
    free(load(document));
    peak = heap.peak();
  }
  for (auto _ : state) {
    if (heapState == Heap::kCold) malloc_trim(0);
    free(Timed(state, [&] { return load(document); }));
  }
  state.SetBytesProcessed(state.iterations() * document.size());
  state.counters["peak"] = static_cast<double>(peak);
  state.counters["peak/byte"] = static_cast<double>(peak) / document.size();
}

/// The number of write system calls of this process so far.
inline long WriteCalls() {
  std::ifstream io("/proc/self/io");
  std::string key;
  long count = 0;
  while (io >> key >> count)
    if (key == "syscw:") return count;
  return 0;
}

/// Measures saving to a new file. Overwriting one would mostly measure how fast the file system
/// frees the old content.
template <class Save>
void MeasureSave(benchmark::State& state, const std::filesystem::path& path, std::size_t bytes,
                 Save save) {
  const long before = WriteCalls();
  {
    const HeapCount heap;
    save();
    state.counters["allocs"] = static_cast<double>(heap.allocations());
    state.counters["peak"] = static_cast<double>(heap.peak());
    state.counters["peak/byte"] = static_cast<double>(heap.peak()) / bytes;
  }
  state.counters["writes"] = static_cast<double>(WriteCalls() - before);
  for (auto _ : state) {
    std::filesystem::remove(path);
    const bool saved = Timed(state, save);
    if (!saved) state.SkipWithError("the file cannot be saved");
  }
  state.SetBytesProcessed(state.iterations() * bytes);
}

}  // namespace vosmere::bench
