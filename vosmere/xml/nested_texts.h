// A bound on the text that readers collect from nested elements.
#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere::xml {

/// Bounds the work for nested elements that are each read for all the text inside them. The text of
/// the innermost is collected once for every level, so that a small document could cost quadratic
/// time and memory. A few levels are free; what deeper ones contain is counted against a limit.
class VOSMERE_API NestedTexts {
 public:
  /// To be called before the text of `element` is collected. Throws DocumentFailure with
  /// kExpandsTooMuch when the limit is exceeded.
  void Enter(const XmlNode& element);
  void Leave() { --open_; }

 private:
  void Count(std::size_t cost);

  int open_ = 0;
  std::size_t held_ = 0;
};

}  // namespace vosmere::xml
