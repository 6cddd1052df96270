#include "vosmere/platform/posix/xml_memory.h"

#include <libxml/xmlmemory.h>

#include <cstddef>
#include <utility>

namespace vosmere::posix {
namespace {

thread_local bool* innermost = nullptr;

// What the parser had before.
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
  /// The parser may live longer than the library.
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
