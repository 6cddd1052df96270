// Shows on a terminal that something takes long.
#include "tools/progress.h"

#include <cstdio>
#include <utility>

#include "tools/terminal.h"

namespace vosmere::tool {

BusyBar::BusyBar(std::string what) : what_(std::move(what)) {
  if (IsTerminal(Stream::kErrors)) thread_ = std::thread([this] { Move(); });
}

BusyBar::~BusyBar() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }
  ended_.notify_one();
  thread_.join();
}

void BusyBar::Move() {
  constexpr int kWidth = 20, kBlock = 5;
  std::unique_lock lock(mutex_);
  const auto isOver = [this] { return isOver_; };
  if (ended_.wait_for(lock, kPatience, isOver)) return;
  int at = 0, by = 1;
  do {
    std::string bar(kWidth, ' ');
    bar.replace(static_cast<std::size_t>(at), kBlock, kBlock, '#');
    std::fprintf(stderr, "\r[%s] %s", bar.c_str(), what_.c_str());
    std::fflush(stderr);
    if (at + by < 0 || at + by > kWidth - kBlock) by = -by;
    at += by;
  } while (!ended_.wait_for(lock, std::chrono::milliseconds(100), isOver));
  std::fputs("\r\033[K", stderr);  // nothing of it stays
}

}  // namespace vosmere::tool
