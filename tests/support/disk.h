// Disks that fail, and disks that lose their power.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "vosmere/cpp/text.h"
#include "vosmere/platform/internal/disk.h"

namespace vosmere::test {

/// Whether `./dev faults` asks for more of everything.
inline bool IsLongForm() {
  return std::getenv("VOSMERE_FAULTS");
}

/// Prints in the long form how much was tried.
inline void SayCount(std::uint64_t count, const char* what) {
  if (!IsLongForm()) return;
  std::printf("%d %s\n", static_cast<int>(count), what);
  std::fflush(stdout);  // or a child process may print it again
}

/// Real flushes take most of the time, and no test can see them.
inline void SkipFlush(const DiskCall& call, std::size_t* most) {
  if (call.kind == DiskCall::kFlush || call.kind == DiskCall::kFlushFolder) *most = 0;
}

/// A disk that does not wait for flushes.
class FastDisk : public DiskWatch {
 public:
  FastDisk() { WatchDiskForTesting(this); }
  ~FastDisk() override { WatchDiskForTesting(nullptr); }
  ULONG Before(const DiskCall& call, std::size_t* most) override {
    SkipFlush(call, most);
    return 0;
  }
  void After(const DiskCall&, ULONG) override {}
};

/// Makes one call fail, or that one and all later ones; counts the calls.
class FailingDisk : public DiskWatch {
 public:
  FailingDisk(int at, bool forEver, ULONG error) : at_(at), forEver_(forEver), error_(error) {
    WatchDiskForTesting(this);
  }
  ~FailingDisk() override { WatchDiskForTesting(nullptr); }

  ULONG Before(const DiskCall& made, std::size_t* most) override {
    const std::lock_guard lock(mutex_);
    SkipFlush(made, most);
    const int call = calls_++;
    if (call != at_ && !(forEver_ && call > at_)) return 0;
    if (error_ == kShort && made.kind == DiskCall::kWrite) *most = 1;
    return error_ == kShort ? 0 : error_;
  }
  void After(const DiskCall&, ULONG) override {}
  bool reached() const { return calls_ > at_; }

  static constexpr ULONG kShort = 0xFFFFFFFF;  // only for writes: one byte is written

 private:
  std::mutex mutex_;
  int calls_ = 0;
  const int at_;
  const bool forEver_;
  const ULONG error_;
};

/// Records what was done to the files of one folder, and makes every state of the folder that a
/// loss of power can leave: what was not flushed is there, or missing, or torn, or zeros, or in
/// another order.
class PowerLoss : public DiskWatch {
 public:
  explicit PowerLoss(const std::filesystem::path& folder)
      : folder_(std::filesystem::canonical(folder)) {
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      const std::string name = entry.path().filename().string();
      start_[name] = static_cast<int>(stored_.size());
      stored_.push_back(ReadBytes(entry.path()));
    }
    WatchDiskForTesting(this);
  }
  ~PowerLoss() override { Stop(); }
  void Stop() { WatchDiskForTesting(nullptr); }

  ULONG Before(const DiskCall& call, std::size_t* most) override {
    SkipFlush(call, most);
    return 0;
  }
  void After(const DiskCall& call, ULONG error) override {
    if (error || !IsInFolder(call)) return;
    const std::lock_guard lock(mutex_);
    events_.push_back({call.kind, Name(call.path), call.to ? Name(call.to) : "",
                       std::string(static_cast<const char*>(call.bytes.data), call.bytes.size),
                       call.position});
  }

  /// Calls `check` for each state of the folder, made anew under `path`, and returns how many there
  /// were. The parameter of `check` is the number of calls made before the loss.
  int ForEachState(const std::filesystem::path& path,
                   const std::function<void(std::size_t call)>& check) {
    Stop();
    names_ = durable_ = start_;
    files_.clear();
    for (const std::string& bytes : stored_) files_.push_back({bytes, {}});
    states_.clear();
    pending_.clear();
    std::size_t count = 0;
    for (std::size_t i = 0; i <= events_.size(); ++i) {
      if (i == events_.size()) count += std::exchange(states_, {}).size();  // more is checked then
      AllStates(path, [&] { check(i); });
      if (i < events_.size()) Do(events_[i]);
    }
    return static_cast<int>(count + states_.size());
  }
  std::size_t calls() const { return events_.size(); }

 private:
  struct Event {
    DiskCall::Kind kind;
    std::string name, to, bytes;
    std::uint64_t position;
  };
  struct File {
    std::string stored;
    std::vector<Event> writes;
  };
  struct Rename {
    std::string from, to;  // empty for a name that appears or disappears
    int file;
  };
  using Names = std::map<std::string, int>;
  enum Loss { kNone, kAll, kTorn, kZeros, kFirst, kLosses };

  bool IsInFolder(const DiskCall& call) const {
    const std::filesystem::path path(ToUtf16(call.path));
    return path.parent_path().lexically_normal() == folder_.lexically_normal();
  }
  static std::string Name(const WChar* path) {
    return std::filesystem::path(ToUtf16(path)).filename().string();
  }

  void Do(const Event& event) {
    switch (event.kind) {
      case DiskCall::kCreate:
        Change({"", event.name, static_cast<int>(files_.size())});
        files_.emplace_back();
        break;
      case DiskCall::kWrite: files_[names_.at(event.name)].writes.push_back(event); break;
      case DiskCall::kFlush: {
        File& file = files_[names_.at(event.name)];
        file.stored = Contents(file, kNone);
        file.writes.clear();
        break;
      }
      case DiskCall::kReplace:
      case DiskCall::kMoveNew: Change({event.name, event.to, names_.at(event.name)}); break;
      case DiskCall::kRemove: Change({event.name, "", 0}); break;
      case DiskCall::kFlushFolder:
        durable_ = names_;
        pending_.clear();
        break;
      default: break;
    }
  }
  void Change(const Rename& rename) {
    Apply(rename, names_);
    pending_.push_back(rename);
  }
  static void Apply(const Rename& rename, Names& names) {
    if (!rename.from.empty()) names.erase(rename.from);
    if (!rename.to.empty()) names[rename.to] = rename.file;
  }

  static std::string Contents(const File& file, Loss loss) {
    std::string bytes = file.stored;
    for (std::size_t i = 0; i < file.writes.size() && loss != kAll; ++i) {
      const Event& write = file.writes[i];
      const bool isLast = i + 1 == file.writes.size();
      std::string part = write.bytes;
      if (loss == kTorn && isLast) part.resize(part.size() / 2);
      if (loss == kZeros || (loss == kFirst && i == 0)) part.assign(part.size(), '\0');
      // Only the second half of a write.
      if (loss == kFirst && isLast) std::memset(part.data(), 0, part.size() / 2);
      bytes.resize(std::max<std::size_t>(bytes.size(), write.position + part.size()));
      bytes.replace(write.position, part.size(), part);
    }
    return bytes;
  }

  template <class Check>
  void AllStates(const std::filesystem::path& path, Check check) {
    const std::size_t count = std::min<std::size_t>(pending_.size(), 6);
    const std::size_t sure = pending_.size() - count;
    for (std::size_t kept = 0; kept < (std::size_t{1} << count); ++kept) {
      Names names = durable_;
      for (std::size_t i = 0; i < pending_.size(); ++i)
        if (i < sure || (kept >> (i - sure) & 1)) Apply(pending_[i], names);
      for (int loss = 0; loss < kLosses; ++loss) {
        std::map<std::string, std::string> state;
        for (const auto& [name, file] : names)
          state[name] = Contents(files_[file], static_cast<Loss>(loss));
        if (!states_.insert(state).second) continue;
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path);
        for (const auto& [name, bytes] : state) WriteBytes(path / name, bytes);
        check();
      }
    }
  }

  const std::filesystem::path folder_;
  std::mutex mutex_;
  Names start_;
  std::vector<std::string> stored_;
  std::vector<Event> events_;

  Names names_, durable_;
  std::vector<Rename> pending_;
  std::vector<File> files_;
  std::set<std::map<std::string, std::string>> states_;
};

}  // namespace vosmere::test
