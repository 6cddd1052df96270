// Appending to a log, so that many changes share one flush.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "vosmere/storage/internal/record_file.h"

namespace vosmere {

/// Writes and flushes on a thread of its own, at most so long after a record was appended. After a
/// failure nothing more is written: whether the disk has what it had been given is not known then.
/// Used by one thread.
class LogWriter {
 public:
  explicit LogWriter(std::chrono::milliseconds delay) : delay_(delay) {}
  LogWriter(const LogWriter&) = delete;
  LogWriter& operator=(const LogWriter&) = delete;
  /// Flushes first.
  ~LogWriter();

  /// Writes at the end of this file. False, with the system's error, when that cannot be.
  bool Begin(DiskFile file, const FileHeader& header, ULONG* error);

  /// Waits only where more than a few megabytes wait already.
  void Append(Record record);
  /// Until everything is on the disk. False, with the system's error, when it is not.
  bool Flush(ULONG* error);
  /// Whether a write has failed, with the system's error.
  bool Failed(ULONG* error);

 private:
  void Run();
  void WriteGroup(std::unique_lock<std::mutex>& lock);

  const std::chrono::milliseconds delay_;
  DiskFile file_;
  std::uint32_t seed_ = 0;

  std::mutex mutex_;
  std::condition_variable wake_, done_;
  std::string waiting_;  // to be written
  std::string writing_;
  bool busy_ = false, hurry_ = false, stop_ = false, failed_ = false;
  ULONG error_ = 0;
  std::thread thread_;
};

}  // namespace vosmere
