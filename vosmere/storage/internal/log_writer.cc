// The thread that writes and flushes a log.
#include "vosmere/storage/internal/log_writer.h"

#include <system_error>
#include <utility>

namespace vosmere {
namespace {

constexpr std::size_t kMostWaiting = 8 << 20;

}  // namespace

LogWriter::~LogWriter() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stop_ = true;
    wake_.notify_one();
  }
  thread_.join();
}

bool LogWriter::Begin(DiskFile file, const FileHeader& header, ULONG* error) {
  file_ = std::move(file);
  seed_ = ChecksumSeed(header);
  try {
    thread_ = std::thread([this] { Run(); });
    return true;
  } catch (const std::system_error& failure) {
    *error = static_cast<ULONG>(failure.code().value());
    return false;
  }
}

void LogWriter::Append(Record record) {
  std::unique_lock lock(mutex_);
  record.isFirst = waiting_.empty();
  const std::size_t before = waiting_.size();
  try {
    WriteRecord(seed_, record, waiting_);
  } catch (...) {
    waiting_.resize(before);  // half a record would hide all after it
    throw;
  }
  if (record.isFirst) wake_.notify_one();
  if (waiting_.size() < kMostWaiting) return;
  hurry_ = true;
  wake_.notify_one();
  done_.wait(lock, [&] { return waiting_.size() < kMostWaiting || failed_; });
}

bool LogWriter::Flush(ULONG* error) {
  std::unique_lock lock(mutex_);
  hurry_ = true;
  wake_.notify_one();
  done_.wait(lock, [&] { return (waiting_.empty() && !busy_) || failed_; });
  *error = error_;
  return !failed_;
}

bool LogWriter::Failed(ULONG* error) {
  const std::lock_guard lock(mutex_);
  *error = error_;
  return failed_;
}

void LogWriter::Run() {
  std::unique_lock lock(mutex_);
  for (;;) {
    wake_.wait(lock, [&] { return stop_ || !waiting_.empty(); });
    if (waiting_.empty()) return;
    wake_.wait_for(lock, delay_, [&] { return stop_ || hurry_; });
    WriteGroup(lock);
    if (failed_ && stop_) return;
  }
}

void LogWriter::WriteGroup(std::unique_lock<std::mutex>& lock) {
  writing_.swap(waiting_);
  waiting_.clear();
  hurry_ = false;
  if (!failed_) {
    busy_ = true;
    lock.unlock();
    const bool written = file_.Write(writing_.data(), writing_.size()) && file_.Flush();
    lock.lock();
    busy_ = false;
    failed_ = !written;
    error_ = written ? 0 : file_.error();
  }
  done_.notify_all();
}

}  // namespace vosmere
