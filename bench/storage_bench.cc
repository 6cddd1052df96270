// Benchmarks of saving a document safely, compared with only the system calls that this needs, and
// of storing every change of a tree, compared with SQLite with a row per change.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "vosmere/cpp/store.h"
#include "vosmere/cpp/tree.h"
#include "vosmere/storage/safe_save.h"

namespace vosmere::bench {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kDocumentBytes = 10 * 1000 * 1000;
constexpr int kPages = 10'000;
constexpr int kChanges = 10'000;  // per round
constexpr int kReplayed = 1'000'000;
constexpr auto kGroup = std::chrono::milliseconds(50);

/// A folder on a real disk (the current directory), which the destructor removes.
class Folder {
 public:
  Folder() : path_(fs::current_path() / ("storage-bench-" + std::to_string(getpid()))) {
    fs::remove_all(path_);
    fs::create_directories(path_);
  }
  ~Folder() { fs::remove_all(path_); }
  fs::path operator/(const char* name) const { return path_ / name; }

 private:
  fs::path path_;
};

// Saving a document.

void SafeSaveOurs(benchmark::State& state) {
  const Folder folder;
  const std::string bytes(kDocumentBytes, 'x');
  const std::u16string path = (folder / "document").u16string();
  const FilePiece piece{bytes.data(), bytes.size()};
  for (auto _ : state)
    if (!SafeSave(Wide(path), &piece, 1, nullptr, nullptr, nullptr)) state.SkipWithError("failed");
}
BENCHMARK(SafeSaveOurs)->Name("SafeSave10MB/vosmere")->UseRealTime()->Unit(benchmark::kMillisecond);

void SafeSaveBare(benchmark::State& state) {
  const Folder folder;
  const std::string bytes(kDocumentBytes, 'x');
  const std::string path = folder / "document", beside = folder / "new";
  const int directory = open(fs::path(path).parent_path().c_str(), O_RDONLY | O_DIRECTORY);
  for (auto _ : state) {
    const int file = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    const bool done =
        write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
        fsync(file) == 0 && close(file) == 0 && rename(beside.c_str(), path.c_str()) == 0 &&
        fsync(directory) == 0;
    if (!done) state.SkipWithError("failed");
  }
  close(directory);
}
BENCHMARK(SafeSaveBare)->Name("SafeSave10MB/bare")->UseRealTime()->Unit(benchmark::kMillisecond);

// Storing changes.

std::string NameOfChange(int change) {
  return "Weather of day " + std::to_string(change);
}

class OurStore {
 public:
  explicit OurStore(const fs::path& path) : store_(Open(path)) {
    pages_.reserve(kPages);
    for (CUrlNode& page : Pages(store_.tree())) pages_.push_back(&page);
    if (!pages_.empty()) return;
    for (int i = 0; i < kPages; ++i)
      pages_.push_back(Add<CUrlNode>(store_.tree(), "Page", "http://page.example/"));
    store_.Checkpoint();
  }
  void Change(int change) { SetName(*pages_[change % kPages], NameOfChange(change)); }
  void Flush() { store_.Flush(); }
  std::size_t size() const { return pages_.size(); }

 private:
  static Store Open(const fs::path& path) {
    StoreOptions options;
    options.groupMilliseconds = static_cast<int>(kGroup.count());
    return *Store::Open(path.u16string(), options);
  }
  Store store_;
  std::vector<CUrlNode*> pages_;
};

/// The same tree in memory, with a database row per change. The changes of a group are one
/// transaction.
class SqliteStore {
 public:
  explicit SqliteStore(const fs::path& path) : tree_(NewTree("")) {
    sqlite3_open(path.c_str(), &database_);
    Do("PRAGMA journal_mode=WAL");
    Do("PRAGMA synchronous=FULL");
    Do("CREATE TABLE IF NOT EXISTS changes(sequence INTEGER PRIMARY KEY, page INTEGER, old TEXT, "
       "new "
       "TEXT)");
    for (int i = 0; i < kPages; ++i)
      pages_.push_back(Add<CUrlNode>(tree_, "Page", "http://page.example/"));
    Replay();
    sqlite3_prepare_v2(database_, "INSERT INTO changes(page, old, new) VALUES(?, ?, ?)", -1,
                       &insert_, nullptr);
    Do("BEGIN");
  }
  ~SqliteStore() {
    Do("COMMIT");
    sqlite3_finalize(insert_);
    sqlite3_close(database_);
  }
  void Change(int change) {
    const std::string name = NameOfChange(change);
    CUrlNode& page = *pages_[change % kPages];
    const std::string old = ToUtf8(page.GetName());
    SetName(page, name);
    sqlite3_bind_int(insert_, 1, change % kPages);
    sqlite3_bind_text(insert_, 2, old.c_str(), -1, SQLITE_STATIC);
    sqlite3_bind_text(insert_, 3, name.c_str(), -1, SQLITE_STATIC);
    sqlite3_step(insert_);
    sqlite3_reset(insert_);
  }
  void Flush() {
    Do("COMMIT");
    Do("BEGIN");
  }
  std::size_t size() const { return pages_.size(); }

 private:
  void Do(const char* sql) { sqlite3_exec(database_, sql, nullptr, nullptr, nullptr); }
  void Replay() {
    sqlite3_stmt* select = nullptr;
    sqlite3_prepare_v2(database_, "SELECT page, new FROM changes ORDER BY sequence", -1, &select,
                       nullptr);
    while (sqlite3_step(select) == SQLITE_ROW)
      SetName(*pages_[static_cast<std::size_t>(sqlite3_column_int(select, 0))],
              reinterpret_cast<const char*>(sqlite3_column_text(select, 1)));
    sqlite3_finalize(select);
  }

  Tree tree_;
  std::vector<CUrlNode*> pages_;
  sqlite3* database_ = nullptr;
  sqlite3_stmt* insert_ = nullptr;
};

/// Measures only the changes, not the flush, which runs in the background in a real program.
template <class Kept>
void Changes(benchmark::State& state) {
  const Folder folder;
  Kept store(folder / "store");
  int change = 0;
  for (auto _ : state) {
    for (int i = 0; i < kChanges; ++i) store.Change(change++);
    state.PauseTiming();
    store.Flush();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kChanges);
}
BENCHMARK(Changes<OurStore>)
    ->Name("Changes10000/vosmere")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Changes<SqliteStore>)
    ->Name("Changes10000/sqlite")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

template <class Kept>
void Replay(benchmark::State& state) {
  const Folder folder;
  {
    Kept store(folder / "store");
    for (int i = 0; i < kReplayed; ++i) store.Change(i);
  }
  for (auto _ : state) {
    const auto store = std::make_unique<Kept>(folder / "store");
    if (store->size() != kPages) state.SkipWithError("lost pages");
  }
  state.SetItemsProcessed(state.iterations() * kReplayed);
}
BENCHMARK(Replay<OurStore>)
    ->Name("Replay1000000/vosmere")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(Replay<SqliteStore>)
    ->Name("Replay1000000/sqlite")
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vosmere::bench
