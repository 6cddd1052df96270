// The repairs of a document while it is being repaired.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "vosmere/import/repair.h"

namespace vosmere::importing {

/// Collects repairs by their position in the text of the document.
class RepairList {
 public:
  /// Repairs beyond this number are only counted.
  static constexpr std::size_t kMostKept = 10000;

  /// `at` is the position in the text in bytes. `found` and `made` are cut to their beginning.
  void Add(RepairKind kind, std::size_t at, std::string_view found, std::string_view made);

  bool empty() const { return entries_.empty(); }
  /// How many were not kept.
  std::size_t more() const { return more_; }
  /// Adds those of another list, at `place(at)`.
  template <class Place>
  void Append(const RepairList& list, Place place) {
    for (Entry entry : list.entries_) {
      entry.at = place(entry.at);
      entries_.size() < kMostKept ? entries_.push_back(std::move(entry)) : void(++more_);
    }
    more_ += list.more_;
  }
  /// Reports the repairs in the order of their places in `text`.
  void Report(std::string_view text, RepairReport report, void* to);

 private:
  struct Entry {
    RepairKind kind;
    std::size_t at;
    std::string found;
    std::string made;
  };

  std::vector<Entry> entries_;
  std::size_t more_ = 0;
};

}  // namespace vosmere::importing
