// Whether the parser has run out of memory, which it does not always say.
#pragma once

namespace vosmere::posix {

/// While it lives, notices when an allocation by the parser fails on this thread.
///
/// The parser has one set of allocation functions for the whole process. The first watch wraps
/// those that it finds there, so memory from before and after mixes, and a program that uses the
/// parser itself, or has given it functions, may go on to.
class XmlMemoryWatch {
 public:
  XmlMemoryWatch();
  XmlMemoryWatch(const XmlMemoryWatch&) = delete;
  XmlMemoryWatch& operator=(const XmlMemoryWatch&) = delete;
  ~XmlMemoryWatch();

  bool RanOut() const { return ranOut_; }

 private:
  bool* const outer_;  // another watch's
  bool ranOut_ = false;
};

}  // namespace vosmere::posix
