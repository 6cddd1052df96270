// LogWriter appends records to a log, and flushes many of them at once.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "vosmere/storage/internal/record_file.h"

namespace vosmere {

/// Writes and flushes on its own thread, at most `delay` after a record was appended. After a
/// failed write or flush nothing more is written, because it is unknown what is on disk then. Only
/// one thread may use the object.
class LogWriter {
 public:
  explicit LogWriter(std::chrono::milliseconds delay) : delay_(delay) {}
  LogWriter(const LogWriter&) = delete;
  LogWriter& operator=(const LogWriter&) = delete;
  /// Writes and flushes what is left.
  ~LogWriter();

  /// Appends to the end of this file. False, with the system's error, if the thread cannot be
  /// started.
  bool Begin(DiskFile file, const FileHeader& header, ULONG* error);

  /// Blocks only while more than eight megabytes are not written yet. If it throws, nothing has
  /// been appended.
  void Append(Record record);
  /// Returns true once everything is on disk. False, with the system's error, if that failed.
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
