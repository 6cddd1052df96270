// Shows on a terminal that something takes long.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace vosmere::tool {

/// What is shorter shows nothing.
inline constexpr std::chrono::seconds kPatience{1};

/// While it lives, and from kPatience on, shows a moving bar on the standard error: how far loading
/// and saving have come is not known. Shows nothing if that is not a terminal. Nothing else may be
/// printed meanwhile.
class BusyBar {
 public:
  /// "reading list.opml"
  explicit BusyBar(std::string what);
  BusyBar(const BusyBar&) = delete;
  BusyBar& operator=(const BusyBar&) = delete;
  ~BusyBar();

 private:
  void Move();

  std::string what_;
  std::mutex mutex_;
  std::condition_variable ended_;
  bool isOver_ = false;
  std::thread thread_;
};

}  // namespace vosmere::tool
