// A bound on the texts of elements within each other.
#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere::xml {

/// Keeps elements that are read for all the text in them, and stand within each other, in
/// proportion to their document: what is in the innermost is in all of them. A few levels are free;
/// what deeper ones hold is counted.
class VOSMERE_API NestedTexts {
 public:
  /// Before the text of `element` is asked for. Throws DocumentFailure with kExpandsTooMuch.
  void Enter(const XmlNode& element);
  void Leave() { --open_; }

 private:
  void Count(std::size_t cost);

  int open_ = 0;
  std::size_t held_ = 0;
};

}  // namespace vosmere::xml
