// A log in the format SARIF 2.1.0, which editors and code hosts show beside the source.
#pragma once

#include <string>

#include "tools/document_content.h"

namespace vosmere::tool {

class Sarif {
 public:
  /// Adds a finding. `rule` is "error", or "loss" for a warning. The place counts from 1; 0 if
  /// unknown.
  void Add(const std::string& rule, const std::string& message, const std::string& file, int line,
           int column);

  /// The whole log.
  Json Log() const;

 private:
  Json results_ = Json::array();
};

}  // namespace vosmere::tool
