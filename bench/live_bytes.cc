// Counts heap memory by replacing malloc and its relatives.
#include "bench/live_bytes.h"

#include <malloc.h>

#include <algorithm>
#include <cerrno>

// The functions of the C library's allocator, which the replacements below call.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}

namespace {

// Plain variables are enough, because the measured code runs on one thread.
bool counting = false;
std::ptrdiff_t live = 0;
std::ptrdiff_t mostLive = 0;
std::size_t allocated = 0;

void* Counted(void* block) {
  if (!counting || !block) return block;
  ++allocated;
  live += static_cast<std::ptrdiff_t>(malloc_usable_size(block));
  mostLive = std::max(mostLive, live);
  return block;
}

void Uncount(void* block) {
  if (counting && block) live -= static_cast<std::ptrdiff_t>(malloc_usable_size(block));
}

}  // namespace

extern "C" {

void* malloc(std::size_t size) {
  return Counted(__libc_malloc(size));
}

void* calloc(std::size_t count, std::size_t size) {
  return Counted(__libc_calloc(count, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return Counted(__libc_memalign(alignment, size));
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  *block = Counted(__libc_memalign(alignment, size));
  return *block ? 0 : ENOMEM;
}

void* realloc(void* block, std::size_t size) {
  Uncount(block);
  return Counted(__libc_realloc(block, size));
}

void free(void* block) {
  Uncount(block);
  __libc_free(block);
}

}  // extern "C"

namespace vosmere::bench {

HeapCount::HeapCount() {
  live = mostLive = 0;
  allocated = 0;
  counting = true;
}

HeapCount::~HeapCount() {
  counting = false;
}

std::size_t HeapCount::peak() const {
  return static_cast<std::size_t>(mostLive);
}

std::size_t HeapCount::allocations() const {
  return allocated;
}

}  // namespace vosmere::bench
