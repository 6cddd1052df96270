// UndoStack, the changes that can be undone or redone.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "vosmere/storage/internal/stored_tree.h"

namespace vosmere {

/// The last changes. When they take more than twice `mostBytes`, the oldest are dropped until they
/// take at most `mostBytes`; the newest one is always kept. All are in one block of memory.
class UndoStack {
 public:
  /// If it throws, nothing has changed but that the oldest are gone.
  void Push(ChangeKind kind, std::string_view bytes, std::uint64_t mostBytes) {
    if (bytes_.size() > 2 * mostBytes) DropOldest(mostBytes);
    ends_.push_back({kind, bytes_.size() + bytes.size()});
    try {
      bytes_ += bytes;
    } catch (...) {
      ends_.pop_back();
      throw;
    }
  }
  /// Reserves memory for this many bytes of changes, so that the block need not grow. The system
  /// provides it only when it is used.
  void Reserve(std::uint64_t bytes, std::uint64_t mostBytes) {
    constexpr std::uint64_t kShortest = 16;  // of a change in a log; fewer are few
    const std::uint64_t room = std::min(bytes, 2 * mostBytes + (std::uint64_t{64} << 10));
    bytes_.reserve(static_cast<std::size_t>(room));
    ends_.reserve(static_cast<std::size_t>(room / kShortest));
  }
  bool empty() const { return ends_.empty(); }
  /// The newest change.
  Change Top() const {
    const std::size_t begin = ends_.size() < 2 ? 0 : ends_[ends_.size() - 2].end;
    return {ends_.back().kind, bytes_.substr(begin)};
  }
  /// Drops the newest change, if there is one.
  void Drop() {
    if (ends_.empty()) return;
    ends_.pop_back();
    bytes_.resize(ends_.empty() ? 0 : ends_.back().end);
  }
  void Clear() {
    ends_.clear();
    bytes_.clear();
  }

 private:
  struct End {
    ChangeKind kind;
    std::size_t end;
  };

  void DropOldest(std::uint64_t mostBytes) {
    std::size_t first = 0;
    while (first < ends_.size() && bytes_.size() - ends_[first].end > mostBytes) ++first;
    if (first == 0) return;
    const std::size_t gone = ends_[first - 1].end;
    ends_.erase(ends_.begin(), ends_.begin() + static_cast<std::ptrdiff_t>(first));
    for (End& end : ends_) end.end -= gone;
    bytes_.erase(0, gone);
  }

  std::vector<End> ends_;
  std::string bytes_;
};

}  // namespace vosmere
