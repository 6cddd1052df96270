// XmlMemoryWatch, which notices when libxml2 runs out of memory; libxml2 does not always report it.
#pragma once

namespace vosmere::posix {

/// Notices failed allocations by libxml2 on this thread, as long as the object exists.
///
/// libxml2 has one set of allocation functions for the whole process. The first watch wraps those
/// that it finds. Memory allocated before and after can therefore be mixed, and a program may use
/// libxml2 itself, even with allocation functions of its own.
class XmlMemoryWatch {
 public:
  XmlMemoryWatch();
  XmlMemoryWatch(const XmlMemoryWatch&) = delete;
  XmlMemoryWatch& operator=(const XmlMemoryWatch&) = delete;
  ~XmlMemoryWatch();

  bool RanOut() const { return ranOut_; }

 private:
  bool* const outer_;  // the enclosing watch's flag
  bool ranOut_ = false;
};

}  // namespace vosmere::posix
