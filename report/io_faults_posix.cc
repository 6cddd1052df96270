// Input and output that fails: every call that reads or changes a file, a full disk, a folder that
// is read-only, files that are cut while they are read, interruptions everywhere.
//
// The calls of the library and of everything that it uses go through the functions of that name in
// this program, which stand before those of the C library.
#undef _FORTIFY_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#define VOSMERE_TEST_DATA REPORT_DATA
#include "report/form_server.h"
#include "report/section.h"
#include "tests/support/files.h"
#include "tests/support/stored_tree.h"
#include "vosmere/cpp.h"
#include "vosmere/platform/internal/clock.h"

namespace vosmere::report {
namespace {

namespace fs = std::filesystem;
using test::Dump, test::ReadBytes, test::TempFolder, test::TestData, test::TestPath,
    test::WriteBytes;

/// How a call fails that is no error: it reads or writes a single byte, or the file is cut before.
constexpr int kShort = -1, kCut = -2;

/// What happens to the calls on the files of one folder.
struct Faults {
  std::atomic<bool> on{false};
  std::string folder;
  std::atomic<long> calls{0};
  long at = 0;
  bool fromThenOn = false;
  bool eachOnce = false;  ///< every third call that waits is interrupted
  int error = 0;
  std::atomic<bool> was{false};
  std::array<std::atomic<bool>, 4096> files{};
  std::atomic<long> waiting{0};

  bool Watches(int file) const {
    return on && file >= 0 && file < 4096 && files[static_cast<std::size_t>(file)];
  }
  bool Watches(const char* path) const {
    return on && std::strncmp(path, folder.c_str(), folder.size()) == 0;
  }

  /// The error of this call, kShort, kCut, or 0. Interrupted are only calls that wait, and those
  /// are made again, except close.
  int Next(const char* kind) {
    const long number = calls++;
    const bool waits = std::strchr("orwfl", *kind) && std::strcmp(kind, "fstat") != 0 &&
                       std::strcmp(kind, "rename") != 0 && std::strcmp(kind, "remove") != 0;
    if (eachOnce) {  // the third, so that what makes two calls and begins again gets on
      const bool isInterrupted = waits && waiting++ % 3 == 0;
      was = was || isInterrupted;
      return isInterrupted ? EINTR : 0;
    }
    if (number != at && !(fromThenOn && number > at)) return 0;
    was = true;
    return error == EINTR && !waits ? 0 : error;
  }
};

Faults faults;

template <class Function>
Function Real(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

int Refuse(int error) {
  errno = error;
  return -1;
}

/// Cuts the file in half; for all who have it open or mapped.
void CutFile(int file) {
  struct stat status;
  char path[64];
  std::snprintf(path, sizeof path, "/proc/self/fd/%d", file);
  if (fstat(file, &status) == 0 && truncate(path, status.st_size / 2) != 0) std::abort();
}

}  // namespace
}  // namespace vosmere::report

using vosmere::report::faults, vosmere::report::Real, vosmere::report::Refuse;
using vosmere::report::kCut, vosmere::report::kShort;

extern "C" {

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const auto mode = static_cast<mode_t>(flags & O_CREAT ? va_arg(rest, unsigned) : 0);
  va_end(rest);
  static const auto real = Real<int (*)(const char*, int, ...)>("open");
  const bool watched = faults.Watches(path);
  if (watched)
    if (const int error = faults.Next("open"); error > 0) return Refuse(error);
  const int file = real(path, flags, mode);
  if (watched && file >= 0 && file < 4096) faults.files[static_cast<std::size_t>(file)] = true;
  return file;
}

int close(int file) {
  static const auto real = Real<int (*)(int)>("close");
  if (!faults.Watches(file)) return real(file);
  faults.files[static_cast<std::size_t>(file)] = false;
  const int error = faults.Next("close");
  real(file);
  return error > 0 ? Refuse(error) : 0;
}

ssize_t read(int file, void* bytes, size_t size) {
  static const auto real = Real<ssize_t (*)(int, void*, size_t)>("read");
  const int error = faults.Watches(file) ? faults.Next("read") : 0;
  if (error > 0) return Refuse(error);
  if (error == kCut) vosmere::report::CutFile(file);
  return real(file, bytes, error == kShort && size ? 1 : size);
}

ssize_t pread(int file, void* bytes, size_t size, off_t at) {
  static const auto real = Real<ssize_t (*)(int, void*, size_t, off_t)>("pread");
  const int error = faults.Watches(file) ? faults.Next("read") : 0;
  if (error > 0) return Refuse(error);
  if (error == kCut) vosmere::report::CutFile(file);
  return real(file, bytes, error == kShort && size ? 1 : size, at);
}

ssize_t write(int file, const void* bytes, size_t size) {
  static const auto real = Real<ssize_t (*)(int, const void*, size_t)>("write");
  const int error = faults.Watches(file) ? faults.Next("write") : 0;
  if (error > 0) return Refuse(error);
  return real(file, bytes, error == kShort && size ? 1 : size);
}

ssize_t pwrite(int file, const void* bytes, size_t size, off_t at) {
  static const auto real = Real<ssize_t (*)(int, const void*, size_t, off_t)>("pwrite");
  const int error = faults.Watches(file) ? faults.Next("write") : 0;
  if (error > 0) return Refuse(error);
  return real(file, bytes, error == kShort && size ? 1 : size, at);
}

ssize_t writev(int file, const iovec* pieces, int count) {
  static const auto real = Real<ssize_t (*)(int, const iovec*, int)>("writev");
  const int error = faults.Watches(file) ? faults.Next("write") : 0;
  if (error > 0) return Refuse(error);
  if (error != kShort || count == 0 || pieces->iov_len == 0) return real(file, pieces, count);
  const iovec one = {pieces->iov_base, 1};
  return real(file, &one, 1);
}

int fsync(int file) {
  if (!faults.Watches(file))
    return 0;  // no test can see a real flush, and they take most of the time
  const int error = faults.Next("flush");
  return error > 0 ? Refuse(error) : 0;
}

int fstat(int file, struct stat* status) noexcept {
  static const auto real = Real<int (*)(int, struct stat*)>("fstat");
  const int error = faults.Watches(file) ? faults.Next("fstat") : 0;
  return error > 0 ? Refuse(error) : real(file, status);
}

void* mmap(void* address, size_t size, int protection, int flags, int file, off_t at) noexcept {
  static const auto real = Real<void* (*)(void*, size_t, int, int, int, off_t)>("mmap");
  const int error = faults.Watches(file) ? faults.Next("map") : 0;
  if (error > 0) return Refuse(error), MAP_FAILED;
  void* const view = real(address, size, protection, flags, file, at);
  if (error == kCut) vosmere::report::CutFile(file);
  return view;
}

int rename(const char* from, const char* to) noexcept {
  static const auto real = Real<int (*)(const char*, const char*)>("rename");
  const int error = faults.Watches(from) ? faults.Next("rename") : 0;
  return error > 0 ? Refuse(error) : real(from, to);
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to,
              unsigned flags) noexcept {
  static const auto real = Real<int (*)(int, const char*, int, const char*, unsigned)>("renameat2");
  const int error = faults.Watches(from) ? faults.Next("rename") : 0;
  return error > 0 ? Refuse(error) : real(fromFolder, from, toFolder, to, flags);
}

int unlink(const char* path) noexcept {
  static const auto real = Real<int (*)(const char*)>("unlink");
  const int error = faults.Watches(path) ? faults.Next("remove") : 0;
  return error > 0 ? Refuse(error) : real(path);
}

int flock(int file, int operation) noexcept {
  static const auto real = Real<int (*)(int, int)>("flock");
  const int error = faults.Watches(file) ? faults.Next("lock") : 0;
  return error > 0 ? Refuse(error) : real(file, operation);
}

int mkdir(const char* path, mode_t mode) noexcept {
  static const auto real = Real<int (*)(const char*, mode_t)>("mkdir");
  const int error = faults.Watches(path) ? faults.Next("make a folder") : 0;
  return error > 0 ? Refuse(error) : real(path, mode);
}

}  // extern "C"

namespace vosmere::report {
namespace {

/// How an operation ended: what it gave, or what it says of the failure.
struct Ended {
  bool done = false;
  std::string shown;        ///< when it is done
  std::string reason = {};  ///< when it has failed and says why
  unsigned systemError = 0;
  bool saysWhy = true;  ///< whether it is an operation that can
};

template <class Value, class Show>
Ended EndedOf(const Result<Value>& result, Show show) {
  if (result) return {true, show(*result)};
  return {false, "", ToString(result.error()), result.error().systemError};
}

/// One operation on the files of a folder that is made anew each time.
struct Row {
  const char* name;
  void (*prepare)(const fs::path& folder);
  Ended (*run)(const fs::path& folder);
  /// What is wrong in the folder afterwards; empty for nothing.
  std::string (*check)(const fs::path& folder, bool done);
};

const std::string& Old() {
  static const std::string old = TestData("collection_tree.opml");
  return old;
}

Tree NewList() {
  Tree tree = NewTree("a new list");
  for (int i = 0; i < 300; ++i) Add<CFolderNode>(tree, "folder " + std::to_string(i));
  return tree;
}

const std::string& NewBytes() {
  static const std::string bytes = SaveToBytes(NewList())->bytes;
  return bytes;
}

void PutList(const fs::path& folder) {
  WriteBytes(folder / "list.opml", Old());
}

void Nothing(const fs::path&) {}

std::string NoCheck(const fs::path&, bool) {
  return {};
}

/// Whole or not at all, and no file is left beside it.
std::string OldOrNew(const fs::path& folder, bool done) {
  const std::string now = ReadBytes(folder / "list.opml");
  if (now != Old() && now != NewBytes())
    return "leaves a document that is neither the old nor the new one";
  if (done && now != NewBytes()) return "says that it is saved, and it is not";
  return {};
}

template <class Kind>
std::string Written(const Kind& value) {
  return SaveToBytes(value)->bytes;
}

std::string OfTree(const Tree& tree) {
  return Dump(tree.get());
}

void PutStore(const fs::path& folder) {
  const Result<Store> store = Store::Open((folder / "store").u16string());
  for (int i = 0; i < 5; ++i) Add<CFolderNode>(store->tree(), "folder " + std::to_string(i));
}

std::string NamesIn(RNode* root) {
  std::string names;
  for (CBaseNode& item : Items(root)) names += ToUtf8(item.GetName()) + ";";
  return names;
}

/// A store can always be opened afterwards, with all that was there and flushed.
std::string StoreOpens(const fs::path& folder, bool done) {
  const Result<Store> store = Store::Open((folder / "store").u16string());
  if (!store) return "cannot be opened any more: " + ToString(store.error());
  const std::string names = NamesIn(store->tree());
  const std::string before = "folder 0;folder 1;folder 2;folder 3;folder 4;";
  if (!names.starts_with(before)) return "has lost what was stored: " + names;
  if (done && names != before + "more;") return "has lost what was flushed: " + names;
  return {};
}

Ended Ended_(const std::optional<Error>& error, std::string shown) {
  if (!error) return {true, std::move(shown)};
  return {false, "", ToString(*error), error->systemError};
}

const Row kRows[] = {
    {"load a list", PutList,
     [](const fs::path& folder) { return EndedOf(Load<Tree>(folder / "list.opml"), OfTree); },
     NoCheck},
    {"load a list by the parser",
     [](const fs::path& folder) {
       std::string bytes = Old();
       bytes.insert(bytes.find("?>") + 2, "<!DOCTYPE opml [<!ENTITY e 'e'>]>");
       WriteBytes(folder / "list.opml", bytes);
     },
     [](const fs::path& folder) { return EndedOf(Load<Tree>(folder / "list.opml"), OfTree); },
     NoCheck},
    {"load a collection",
     [](const fs::path& folder) { WriteBytes(folder / "a.rss", TestData("collection.rss")); },
     [](const fs::path& folder) {
       return EndedOf(Load<Collection>(folder / "a.rss"), Written<Collection>);
     },
     NoCheck},
    {"read a text file", PutList,
     [](const fs::path& folder) {
       CReadFile file;
       SystemString text;
       const bool done = file.OpenFile(Wide((folder / "list.opml").u16string())) &&
                         file.ReadAllToBuffer(Out(text)) > 0;
       return Ended{done, ToUtf8(text.get()), "", 0, false};
     },
     NoCheck},
    {"save a list", PutList,
     [](const fs::path& folder) {
       return EndedOf(Save(folder / "list.opml", NewList()),
                      [](const Saved&) { return std::string(); });
     },
     OldOrNew},
    {"save a list where there is none", Nothing,
     [](const fs::path& folder) {
       return EndedOf(Save(folder / "list.opml", NewList()),
                      [](const Saved&) { return std::string(); });
     },
     [](const fs::path& folder, bool done) {
       return !done && !fs::exists(folder / "list.opml") ? std::string() : OldOrNew(folder, done);
     }},
    {"save a list that must not have changed", PutList,
     [](const fs::path& folder) {
       const Result<FileMark> mark = MarkOf(folder / "list.opml");
       if (!mark) return Ended{false, "", ToString(mark.error()), mark.error().systemError};
       return EndedOf(Save(folder / "list.opml", NewList(), {.expected = *mark}),
                      [](const Saved&) { return std::string(); });
     },
     OldOrNew},
    {"copy a file safely",
     [](const fs::path& folder) {
       PutList(folder);
       WriteBytes(folder / "from", NewBytes());
     },
     [](const fs::path& folder) {
       DocumentError error;
       const bool done =
           SafeCopy(Wide((folder / "from").u16string()), Wide((folder / "list.opml").u16string()),
                    nullptr, nullptr, &error);
       return Ended{done, "", error.reason, error.systemError};
     },
     OldOrNew},
    {"save bookmarks", PutList,
     [](const fs::path& folder) {
       return EndedOf(SaveBookmarks(folder / "list.opml", NewList()),
                      [](const Saved&) { return std::string(); });
     },
     [](const fs::path& folder, bool done) {
       const std::string now = ReadBytes(folder / "list.opml");
       const bool isNew = now == BookmarksToBytes(NewList())->bytes;
       return isNew || (!done && now == Old()) ? std::string() : std::string("leaves half a file");
     }},
    {"write a document plainly", Nothing,
     [](const fs::path& folder) {
       const Tree list = NewList();
       CWriteColctTreeOPML writer;
       writer.SetTreeRoot(list.get());
       const bool done = writer.SaveToFile(Wide((folder / "list.opml").u16string()));
       return Ended{done, "", writer.LastError().reason, writer.LastError().systemError};
     },
     [](const fs::path& folder, bool done) {
       return !done || ReadBytes(folder / "list.opml") == NewBytes()
                  ? std::string()
                  : std::string("says that it is saved, and it is not");
     }},
    {"write a text file", Nothing,
     [](const fs::path& folder) {
       CWriteFile file;
       const bool done =
           file.OpenFile(Wide((folder / "a").u16string())) &&
           file.WriteStreamData(NewBytes().data(), static_cast<int>(NewBytes().size())) &&
           file.CloseFile();
       return Ended{done, "", "", file.SystemError()};
     },
     [](const fs::path& folder, bool done) {
       return !done || ReadBytes(folder / "a") == NewBytes()
                  ? std::string()
                  : std::string("says that it is written, and it is not");
     }},
    {"export a note", Nothing,
     [](const fs::path& folder) {
       const Tree page = NewTree<CUrlNode>("a note");
       SetDescription(*page->item, std::string(5000, 'x'));
       CWriteNoteHtml note;
       const bool done = note.WriteToFile(page->item, Wide((folder / "a.html").u16string())) &&
                         note.SystemError() == 0;
       return Ended{done, done ? ReadBytes(folder / "a.html") : "", "", note.SystemError()};
     },
     NoCheck},
    {"import bookmarks",
     [](const fs::path& folder) { WriteBytes(folder / "a.html", TestData("favorites.html")); },
     [](const fs::path& folder) {
       return EndedOf(Import(folder / "a.html"),
                      [](const Imported& imported) { return NamesIn(imported.tree.get()); });
     },
     NoCheck},
    {"import the Favorites",
     [](const fs::path& folder) {
       fs::create_directory(folder / "sub");
       for (const char* name : {"a.url", "sub/b.url"})
         WriteBytes(folder / name, "[InternetShortcut]\r\nURL=http://a.example/\r\n");
     },
     [](const fs::path& folder) {
       FavoritesReport report;
       const Tree tree = LoadFavorites(folder, &report);
       // What could not be read is counted.
       const bool all = tree && !report.foldersNotRead && !report.shortcutsWithoutAddress;
       std::string addresses;
       for (const CUrlNode& page : Pages(tree)) addresses += ToUtf8(page.GetUrl());
       return Ended{all, addresses, "", 0, false};
     },
     NoCheck},
    {"open a store", PutStore,
     [](const fs::path& folder) {
       const Result<Store> store = Store::Open((folder / "store").u16string());
       if (!store) return Ended{false, "", ToString(store.error()), store.error().systemError};
       std::string notes;
       for (const StoreNote& note : store->notes()) notes += note.text + "; ";
       const bool whole = NamesIn(store->tree()) == "folder 0;folder 1;folder 2;folder 3;folder 4;";
       return Ended{whole, "", notes, 0};
     },
     [](const fs::path& folder, bool) { return StoreOpens(folder, false); }},
    {"make a store", Nothing,
     [](const fs::path& folder) {
       return EndedOf(Store::Open((folder / "store").u16string()),
                      [](const Store&) { return std::string(); });
     },
     [](const fs::path& folder, bool) {
       const Result<Store> store = Store::Open((folder / "store").u16string());
       return store ? std::string() : "cannot be opened any more: " + ToString(store.error());
     }},
    {"change a store and flush", PutStore,
     [](const fs::path& folder) {
       Result<Store> store = Store::Open((folder / "store").u16string());
       if (!store) return Ended{false, "", ToString(store.error()), store.error().systemError};
       if (NamesIn(store->tree()) != "folder 0;folder 1;folder 2;folder 3;folder 4;")
         return Ended{false, "", "", 0, false};
       Add<CFolderNode>(store->tree(), "more");
       return Ended_(store->Flush(), "");
     },
     StoreOpens},
    {"change a store and write a checkpoint", PutStore,
     [](const fs::path& folder) {
       Result<Store> store = Store::Open((folder / "store").u16string());
       if (!store) return Ended{false, "", ToString(store.error()), store.error().systemError};
       if (NamesIn(store->tree()) != "folder 0;folder 1;folder 2;folder 3;folder 4;")
         return Ended{false, "", "", 0, false};
       Add<CFolderNode>(store->tree(), "more");
       return Ended_(store->Checkpoint(), "");
     },
     StoreOpens},
    {"upload a file", PutList,
     [](const fs::path& folder) {
       static FormServer server;
       const Result<Reply> reply =
           Upload(server.host(), "/").SendFile((folder / "list.opml").u16string());
       if (reply) return Ended{reply->IsOk(), reply->text};
       return Ended{false, "", ToString(reply.error()), reply.error().systemError, false};
     },
     NoCheck},
};

struct Way {
  const char* name;
  int error;
  bool fromThenOn;
  bool eachOnce;
  bool mustSucceed;
};
const Way kWays[] = {
    {"an error of the disk (EIO), once", EIO, false, false, false},
    {"an error of the disk (EIO), from then on", EIO, true, false, false},
    {"no space (ENOSPC), once", ENOSPC, false, false, false},
    {"no space (ENOSPC), from then on", ENOSPC, true, false, false},
    {"interrupted (EINTR), once", EINTR, false, false, true},
    {"every third call interrupted", EINTR, false, true, true},
    {"one byte is read or written", kShort, false, false, true},
    {"only one byte is read or written at a time", kShort, true, false, true},
    {"the file is cut before it is read, or after it was mapped", kCut, false, false, false},
};

struct Tally {
  long points = 0, done = 0, failed = 0;
  long faults = 0;
  char fault[300] = {};
};

class Trial {
 public:
  Trial(const Row& row, const Way& way, bool isShort) : row_(row), way_(way), isShort_(isShort) {}

  Tally Run() {
    faults.at = -1;
    faults.error = 0;
    usual_ = Once(&failure_).shown;
    if (!failure_.empty()) Blame(failure_, -1);
    for (long at = 0; tally_.faults < 5; at += isShort_ && at > 20 ? 7 : 1) {
      faults.at = at;
      faults.error = way_.error;
      faults.fromThenOn = way_.fromThenOn;
      faults.eachOnce = way_.eachOnce;
      failure_.clear();
      const Ended ended = Once(&failure_);
      if (!faults.was) break;
      ++tally_.points;
      ++(ended.done ? tally_.done : tally_.failed);
      if (way_.error == kCut) continue;  // what is cut is not whole any more
      if (!failure_.empty()) Blame(failure_, at);
      if (ended.done && ended.shown != usual_) Blame("is done with another result", at);
      if (!ended.done) CheckFailure(ended, at);
      if (way_.eachOnce) break;
    }
    return tally_;
  }

 private:
  Ended Once(std::string* wrong) {
    const TempFolder folder;
    const fs::path path = folder / "";
    row_.prepare(path);
    faults.folder = path.string();
    faults.calls = 0;
    faults.was = false;
    faults.waiting = 0;
    faults.on = true;
    Ended ended = row_.run(path);
    faults.on = false;
    *wrong = row_.check(path, ended.done);
    return ended;
  }

  void CheckFailure(const Ended& ended, long at) {
    if (way_.mustSucceed) return Blame("fails: " + ended.reason, at);
    if (!ended.saysWhy || way_.error < 0) return;
    const std::string message = std::strerror(way_.error);
    if (ended.systemError != static_cast<unsigned>(way_.error) &&
        ended.reason.find(message) == std::string::npos)
      Blame("does not say '" + message + "' but '" + ended.reason + "'", at);
  }

  void Blame(const std::string& what, long at) {
    if (tally_.faults++ == 0)
      std::snprintf(tally_.fault, sizeof tally_.fault, "%s (call %ld)", what.c_str(), at);
  }

  const Row& row_;
  const Way& way_;
  const bool isShort_;
  std::string usual_, failure_;
  Tally tally_;
};

/// In a process of its own, so that a crash is a result like others.
template <class Work>
Tally RunApart(Work work) {
  std::array<int, 2> ends;
  if (pipe(ends.data()) != 0) std::abort();
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    alarm(300);
    SetClockForTesting([] { return LONG{1'200'000'000}; });
    const Tally tally = work();
    _exit(write(ends[1], &tally, sizeof tally) != sizeof tally);
  }
  close(ends[1]);
  Tally tally;
  const bool told = read(ends[0], &tally, sizeof tally) == sizeof tally;
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (told) return tally;
  tally.faults = 1;
  std::snprintf(tally.fault, sizeof tally.fault, "ends with signal %d",
                WIFSIGNALED(status) ? WTERMSIG(status) : 0);
  return tally;
}

// Real disks.

/// A file system of a few kilobytes, or one that is read-only; false where it cannot be mounted.
bool Mount(const fs::path& folder, const char* options, unsigned long flags = 0) {
  return mount("tmpfs", folder.c_str(), "tmpfs", flags, options) == 0;
}

void Count(Tally& tally, bool isRight, const std::string& what) {
  ++tally.points;
  if (!isRight && tally.faults++ == 0)
    std::snprintf(tally.fault, sizeof tally.fault, "%s", what.c_str());
}

void FillDisk(const fs::path& folder) {
  const int file = open((folder / "filler").c_str(), O_WRONLY | O_CREAT, 0666);
  const std::string page(4096, 'x');
  while (write(file, page.data(), page.size()) > 0) {
  }
  close(file);
}

bool Says(const std::string& reason, int error) {
  return reason.find(std::strerror(error)) != std::string::npos;
}

/// Saves, and a store, on a disk that fills up. What was there stays, and goes on when there is
/// room.
Tally OnAFullDisk() {
  Tally tally;
  const TempFolder folder;
  const fs::path path = folder / "";
  if (!Mount(path, "size=128k")) {
    Count(tally, !Save(fs::path("/dev/full"), NewList()), "a full device takes a document");
    return tally;
  }
  {
    PutList(path);
    Result<Store> store = Store::Open((path / "store").u16string());
    Add<CFolderNode>(store->tree(), "flushed");
    Count(tally, !store->Flush(), "cannot be flushed while there is room");
    FillDisk(path);
    for (int i = 0; i < 5; ++i) {
      const Result<Saved> saved = Save(path / "list.opml", NewList());
      Count(tally, !saved && Says(ToString(saved.error()), ENOSPC),
            "a save on a full disk is not refused: " + ToString(saved.error()));
      Count(tally, ReadBytes(path / "list.opml") == Old(), "the old list is gone");
    }
    for (int i = 0; i < 300; ++i) Add<CFolderNode>(store->tree(), std::string(100, 'x'));
    const std::optional<Error> flushed = store->Flush();
    Count(tally, flushed && Says(ToString(*flushed), ENOSPC),
          "a flush on a full disk is not refused");
    fs::remove(path / "filler");
    const std::optional<Error> again = store->Flush();
    Count(tally, !again,
          "cannot be flushed when there is room again: " + (again ? ToString(*again) : ""));
  }
  {
    const Result<Store> store = Store::Open((path / "store").u16string());
    std::size_t count = 0;
    if (store)
      for ([[maybe_unused]] CBaseNode& item : Items(store->tree())) ++count;
    Count(tally, count == 301, "the store has " + std::to_string(count) + " of 301 items");
  }
  umount2(path.c_str(), MNT_DETACH);
  return tally;
}

/// On a read-only disk everything can be read and nothing is changed.
Tally OnAReadOnlyDisk() {
  Tally tally;
  const TempFolder folder;
  const fs::path path = folder / "";
  if (!Mount(path, "size=1m")) return tally;
  PutList(path);
  PutStore(path);
  if (!Mount(path, "size=1m", MS_REMOUNT | MS_RDONLY)) return tally;
  Count(tally, static_cast<bool>(Load<Tree>(path / "list.opml")), "cannot be loaded");
  const Result<Saved> saved = Save(path / "list.opml", NewList());
  Count(tally, !saved && Says(ToString(saved.error()), EROFS),
        "a save is not refused: " + ToString(saved.error()));
  Count(tally, ReadBytes(path / "list.opml") == Old(), "the old list is gone");
  const Result<Store> writing = Store::Open((path / "store").u16string());
  Count(tally, !writing && Says(ToString(writing.error()), EROFS), "a store is opened for writing");
  StoreOptions options;
  options.readOnly = true;
  Count(tally, static_cast<bool>(Store::Open((path / "store").u16string(), options)),
        "a store cannot be read");
  umount2(path.c_str(), MNT_DETACH);
  return tally;
}

/// Another process cuts the file again and again while it is loaded and uploaded.
Tally CutWhileRead(bool isShort) {
  Tally tally;
  const TempFolder folder;
  const fs::path path = folder / "list.opml";
  std::string large = NewBytes();
  const std::string outline = large.substr(large.find("<outline text=\"folder 7\""), 60);
  const Tree list = NewTree("many");
  for (int i = 0; i < 20000; ++i) Add<CFolderNode>(list, "folder " + std::to_string(i));
  large = SaveToBytes(list)->bytes;
  WriteBytes(path, large);
  const pid_t child = fork();
  if (child == 0) {
    alarm(120);
    for (unsigned i = 0;; ++i) {
      if (truncate(path.c_str(), static_cast<off_t>(large.size() * (i % 7) / 8)) != 0) _exit(1);
      usleep(300 + i % 5 * 200);
      const int file = open(path.c_str(), O_WRONLY);
      if (write(file, large.data(), large.size()) < 0) _exit(1);
      close(file);
      usleep(500);
    }
  }
  FormServer server;
  for (int i = 0; i < (isShort ? 100 : 2000); ++i) {
    const Result<Tree> tree = Load<Tree>(path);
    ++tally.points;
    ++(tree ? tally.done : tally.failed);
    if (i % 10) continue;
    const Result<Reply> reply = Upload(server.host(), "/").SendFile(path.u16string());
    ++tally.points;
    ++(reply ? tally.done : tally.failed);
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  return tally;
}

/// A timer interrupts whatever waits, thousands of times in a second.
Tally UnderSignals(bool isShort) {
  Tally tally;
  struct sigaction action = {};
  action.sa_handler = [](int) {};
  sigaction(SIGALRM, &action, nullptr);  // without SA_RESTART
  for (const Row& row : kRows) {
    for (int i = 0; i < (isShort ? 3 : 100); ++i) {
      const TempFolder folder;
      row.prepare(folder / "");
      const itimerval timer = {{0, 200}, {0, 200}}, none = {};
      setitimer(ITIMER_REAL, &timer, nullptr);
      const Ended ended = row.run(folder / "");
      setitimer(ITIMER_REAL, &none, nullptr);
      Count(tally, ended.done, std::string(row.name) + " fails: " + ended.reason);
      ++(ended.done ? tally.done : tally.failed);
    }
  }
  return tally;
}

}  // namespace
}  // namespace vosmere::report

int main(int argc, char** argv) {
  using namespace vosmere::report;
  Section section(argc, argv, "Files and disks that fail");
  const bool isShort = section.isShort();
  section.Say("Each of " + std::to_string(std::size(kRows)) +
              " operations was run with its first, second, ... call to the system failing (open, "
              "read, write, flush, fstat, map, rename, "
              "remove, lock, make a folder, close). Either the operation does what it does "
              "otherwise, or it fails and names "
              "the error. An old document is never replaced by half a new one, and a store opens "
              "afterwards with all that was flushed.");
  section.Row("What happens", "Calls", "Done all the same", "Failed and said so", "Faults");
  Tally all;
  const auto tell = [&](const std::string& name, const Tally& tally) {
    section.Row(name, tally.points, tally.done, tally.failed, tally.faults);
  };
  for (const Way& way : kWays) {
    Tally sum;
    for (const Row& row : kRows) {
      const Tally tally = RunApart([&] { return Trial(row, way, isShort).Run(); });
      sum.points += tally.points, sum.done += tally.done, sum.failed += tally.failed,
          sum.faults += tally.faults;
      if (tally.faults) section.Wrong(std::string(row.name) + ": " + way.name + ": " + tally.fault);
    }
    tell(way.name, sum);
  }
  section.Say("And with real disks and signals:");
  section.Row("What happens", "Tries", "Done all the same", "Failed and said so", "Faults");
  const auto real = [&](const std::string& name, const Tally& tally) {
    if (tally.points == 0) return;  // it cannot be had on this machine
    tell(name, tally);
    if (tally.faults) section.Wrong(name + ": " + tally.fault);
  };
  real("a signal every 200 microseconds", RunApart([&] { return UnderSignals(isShort); }));
  real("another process cuts the file while it is read",
       RunApart([&] { return CutWhileRead(isShort); }));
  real("a disk that is full (checks)", RunApart(OnAFullDisk));
  real("a disk that is read-only (checks)", RunApart(OnAReadOnlyDisk));
  return section.End();
}
