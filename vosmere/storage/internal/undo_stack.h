#pragma once

#include <deque>
#include <optional>
#include <utility>

#include "vosmere/storage/internal/stored_tree.h"

namespace vosmere {

/// The last changes, as many as fit into so many bytes; the newest is always kept.
class UndoStack {
 public:
  void Push(Change change, std::uint64_t mostBytes) {
    bytes_ += change.bytes.size();
    changes_.push_back(std::move(change));
    while (bytes_ > mostBytes && changes_.size() > 1) {
      bytes_ -= changes_.front().bytes.size();
      changes_.pop_front();
    }
  }
  bool empty() const { return changes_.empty(); }
  const Change& top() const { return changes_.back(); }
  std::optional<Change> Pop() {
    if (changes_.empty()) return {};
    Change change = std::move(changes_.back());
    changes_.pop_back();
    bytes_ -= change.bytes.size();
    return change;
  }
  void Clear() {
    changes_.clear();
    bytes_ = 0;
  }

 private:
  std::deque<Change> changes_;
  std::uint64_t bytes_ = 0;
};

}  // namespace vosmere
