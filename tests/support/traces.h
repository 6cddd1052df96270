// What the library traced.
#pragma once

#include <string>
#include <vector>

#include "vosmere/platform/trace.h"

namespace vosmere::test {

/// Collects trace lines while it lives.
class Traces {
 public:
  Traces() {
    lines_.clear();
    SetTraceHook([](const char* line) { lines_.push_back(line); });
  }
  Traces(const Traces&) = delete;
  Traces& operator=(const Traces&) = delete;
  ~Traces() { SetTraceHook(nullptr); }

  const std::vector<std::string>& lines() const { return lines_; }

 private:
  static inline std::vector<std::string> lines_;
};

}  // namespace vosmere::test
