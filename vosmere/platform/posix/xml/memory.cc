// Wraps libxml2's allocation functions.
#include "vosmere/platform/posix/xml/memory.h"

#include <libxml/xmlmemory.h>

#include <cstddef>
#include <utility>

namespace vosmere::posix {
namespace {

thread_local bool* innermost = nullptr;  // the flag of the innermost watch

// The functions that were set before.
xmlFreeFunc freeBlock;
xmlMallocFunc allocate;
xmlReallocFunc reallocate;
xmlStrdupFunc duplicate;

template <class Block>
Block* Noticed(Block* block) {
  if (!block && innermost) *innermost = true;
  return block;
}

void* Allocate(std::size_t size) {
  return Noticed(allocate(size));
}

void* Reallocate(void* block, std::size_t size) {
  return Noticed(reallocate(block, size));
}

char* Duplicate(const char* text) {
  return Noticed(duplicate(text));
}

struct Wrapping {
  Wrapping() {
    xmlMemGet(&freeBlock, &allocate, &reallocate, &duplicate);
    xmlMemSetup(freeBlock, Allocate, Reallocate, Duplicate);
  }
  /// libxml2 may stay loaded when the library is unloaded. Functions that a program has set since
  /// are kept.
  ~Wrapping() {
    if (xmlMalloc == Allocate) xmlMemSetup(freeBlock, allocate, reallocate, duplicate);
  }
};

}  // namespace

XmlMemoryWatch::XmlMemoryWatch() : outer_(std::exchange(innermost, &ranOut_)) {
  static const Wrapping wrapping;
}

XmlMemoryWatch::~XmlMemoryWatch() {
  innermost = outer_;
}

}  // namespace vosmere::posix
