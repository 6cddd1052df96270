// Whether memory grows: documents of every kind loaded and saved again and again, on two threads.
#include <atomic>
#include <cstdio>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#ifdef _WIN32
#define PSAPI_VERSION 2  // in a library that is there anyway
#include <windows.h>
// After windows.h.
#include <psapi.h>
#else
#include <malloc.h>
#include <unistd.h>
#endif

#define VOSMERE_TEST_DATA REPORT_DATA
#include "report/section.h"
#include "tests/support/files.h"
#include "vosmere/cpp.h"

namespace vosmere::report {
namespace {

struct Use {
  long long live = 0;      ///< bytes of the heap that are in use
  long long resident = 0;  ///< bytes that the process takes of the system
};

#ifdef _WIN32
constexpr const char* kHeading = "Memory over many loads and saves, on Windows (Wine)";
Use UsedNow() {
  PROCESS_MEMORY_COUNTERS_EX counters = {};
  GetProcessMemoryInfo(GetCurrentProcess(), reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&counters),
                       sizeof counters);
  Use use;
  use.resident = static_cast<long long>(counters.WorkingSetSize);
  PROCESS_HEAP_ENTRY entry = {};
  const HANDLE heap = GetProcessHeap();
  while (HeapWalk(heap, &entry))
    if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) use.live += entry.cbData;
  return use;
}
void UseOneHeap() {}
#else
constexpr const char* kHeading = "Memory over many loads and saves";
Use UsedNow() {
  const struct mallinfo2 info = mallinfo2();
  long pages = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> pages >> resident;
  return {static_cast<long long>(info.uordblks + info.hblkhd), resident * sysconf(_SC_PAGESIZE)};
}
/// Otherwise what the second thread holds is not counted.
void UseOneHeap() {
  mallopt(M_ARENA_MAX, 1);
}
#endif

struct Kept {
  std::string bytes;
  void (*cycle)(const std::string& bytes, const std::filesystem::path& path, bool toFile);
};

std::atomic<long> failures{0};

template <class Kind>
void Cycle(const std::string& bytes, const std::filesystem::path& path, bool toFile) {
  Losses losses;
  const Result<Kind> value = Load<Kind>(Bytes(bytes), &losses);
  if (!value || !SaveToBytes(*value)) ++failures;
  if (toFile && value && (!Save(path, *value) || !Load<Kind>(path))) ++failures;
}

/// A broken list, repaired, and a document that is refused.
void CycleOfImport(const std::string& bytes, const std::filesystem::path&, bool) {
  if (!Import(Bytes(bytes)) || Load<Tree>(Bytes("<opml><body><outline></body></opml>"))) ++failures;
}

template <class Kind>
Kept Golden(const char* name) {
  return {test::TestData(name), Cycle<Kind>};
}

/// As the parser of the system reads it: a DOCTYPE is not for the plain one.
Kept WithParser(Kept kept) {
  kept.bytes.insert(kept.bytes.find("?>") + 2, "<!DOCTYPE a [<!ENTITY e 'e'>]>");
  return kept;
}

std::vector<Kept> Documents() {
  return {Golden<Tree>("collection_tree.opml"),
          WithParser(Golden<Tree>("collection_tree.opml")),
          Golden<Collection>("collection.rss"),
          WithParser(Golden<Collection>("collection.rss")),
          Golden<ColctList>("colct_list.xml"),
          Golden<ColctItemNameList>("colct_item_ids.xml"),
          Golden<ColctProfile>("colct_profile.xml"),
          Golden<FtpSiteList>("ftp_sites.xml"),
          Golden<Notification>("notification.xml"),
          Golden<PageData>("page_data.xml"),
          Golden<EnginePool>("search_engines.xml"),
          Golden<TagGroupList>("tags.xml"),
          Golden<ToolbarBands>("toolbars.xml"),
          {"<opml><body><outline text='a & b'><outline text=c url=http://a.example/></body>",
           CycleOfImport}};
}

void RunCycles(const std::vector<Kept>& documents, const std::filesystem::path& path, long count) {
  for (long i = 0; i < count; ++i) {
    const Kept& each = documents[static_cast<std::size_t>(i) % documents.size()];
    each.cycle(each.bytes, path, i % 701 == 0);  // flushing takes long
  }
}

}  // namespace
}  // namespace vosmere::report

int main(int argc, char** argv) {
  using namespace vosmere::report;
  UseOneHeap();
  Section section(argc, argv, kHeading);
  const long cycles = section.isShort() ? 2'000 : 100'000;
  constexpr long kParts = 10;
  const std::vector<Kept> documents = Documents();
  const vosmere::test::TempFolder folder;
  const auto run = [&](long count) {
    std::thread other([&] { RunCycles(documents, folder / "other.xml", count / 2); });
    RunCycles(documents, folder / "mine.xml", count / 2);
    other.join();
  };
  run(cycles / kParts);  // until caches are full
  const Use before = UsedNow();
  std::FILE* const data = section.dataFile() ? std::fopen(section.dataFile(), "w") : nullptr;
  Use now = before;
  section.Say(std::to_string(documents.size()) +
              " documents, of every kind, through both ways of the parser, broken and refused ones "
              "too, were loaded "
              "and saved in turn, on two threads at once; every 701st time to a file and from it.");
  section.Row("Cycles", "Bytes in use", "Bytes resident");
  section.Row(0, before.live, before.resident);
  for (long part = 1; part <= kParts; ++part) {
    run(cycles / kParts);
    now = UsedNow();
    section.Row(part * (cycles / kParts), now.live, now.resident);
    if (data)
      std::fprintf(data, "%ld %lld %lld\n", part * (cycles / kParts), now.live, now.resident);
  }
  if (data) std::fclose(data);
  // A leak of one byte in each cycle would be more.
  const long long grown = now.live - before.live, most = section.isShort() ? 64'000 : cycles;
  if (grown > most) section.Wrong("memory in use has grown by " + std::to_string(grown) + " bytes");
  if (now.resident - before.resident > 8'000'000) section.Wrong("the process has grown");
  if (failures) section.Wrong(std::to_string(failures) + " cycles failed");
  return section.End();
}
