// Which pages of a tree refer to which links.
#pragma once

#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "vosmere/storage/internal/number_map.h"

namespace vosmere {

/// Pages and the links that they refer to, found both ways. Keys are not 0.
class References {
 public:
  bool empty() const { return targets_.size() == 0; }

  /// A target of 0 ends it.
  void Set(std::uint64_t page, std::uint64_t target) {
    const std::uint64_t old = targets_.Find(page);
    if (old == target) return;
    if (target) {
      pages_.insert({target, page});
      targets_.Set(page, target);
    } else {
      targets_.Erase(page);
    }
    if (old) pages_.erase({old, page});
  }
  /// Appends the pages that refer to it.
  void PagesOf(std::uint64_t target, std::vector<std::uint64_t>& found) const {
    for (auto at = pages_.lower_bound({target, 0}); at != pages_.end() && at->first == target; ++at)
      found.push_back(at->second);
  }

 private:
  NumberMap targets_;                                        // page to target
  std::set<std::pair<std::uint64_t, std::uint64_t>> pages_;  // target and page
};

}  // namespace vosmere
