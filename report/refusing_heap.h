// The heap of a program on Linux, replaced so that it counts what is held and can refuse: malloc,
// its relatives, and operator new with them, on all threads and in all libraries. Included by one
// file of the program.
#pragma once

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define VOSMERE_SANITIZED
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VOSMERE_SANITIZED
#endif
#endif

// A sanitizer has a heap of its own, which stays as it is: there only operator new refuses, and
// what it returns comes from the sanitizer, which finds what is freed twice.
#ifdef VOSMERE_SANITIZED
#define VOSMERE_HEAP(function) ::function
#else
#define VOSMERE_HEAP(function) __libc_##function

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);
}
#endif

namespace vosmere::report {

namespace heap {

constexpr long kNone = std::numeric_limits<long>::max();

inline std::atomic<long> blocks{0};
inline std::atomic<long> bytes{0};
inline std::atomic<long> asked{0};
inline std::atomic<long> refusedFrom{kNone};
inline std::atomic<bool> onlyOnce{false};
inline std::atomic<long> refused{0};

inline bool MayAllocate() {
  const long number = asked++;
  const long from = refusedFrom.load(std::memory_order_relaxed);
  if (onlyOnce ? number != from : number < from) return true;
  ++refused;
  errno = ENOMEM;
  return false;
}

inline void* Counted(void* block) {
  if (!block) return nullptr;
  ++blocks;
  bytes += static_cast<long>(malloc_usable_size(block));
  return block;
}

inline void Uncount(void* block) {
  if (!block) return;
  --blocks;
  bytes -= static_cast<long>(malloc_usable_size(block));
}

inline void Free(void* block) {
  Uncount(block);
  VOSMERE_HEAP(free)(block);
}

inline void* New(std::size_t size) {
  return MayAllocate() ? Counted(VOSMERE_HEAP(malloc)(size ? size : 1)) : nullptr;
}

}  // namespace heap

/// Refuses the allocation with that number, counted from 0, and all after it unless only one is to
/// fail, while it lives.
class RefusedMemory {
 public:
  RefusedMemory(long number, bool onlyOnce) {
    heap::onlyOnce = onlyOnce;
    heap::refused = heap::asked = 0;
    heap::refusedFrom = number;
  }
  RefusedMemory(const RefusedMemory&) = delete;
  RefusedMemory& operator=(const RefusedMemory&) = delete;
  ~RefusedMemory() {
    heap::refusedFrom = heap::kNone;
    heap::onlyOnce = false;
  }

  static bool WasRefused() { return heap::refused > 0; }
};

}  // namespace vosmere::report

#ifndef VOSMERE_SANITIZED
extern "C" {

void* malloc(std::size_t size) {
  return vosmere::report::heap::New(size);
}

void* calloc(std::size_t count, std::size_t size) {
  if (!vosmere::report::heap::MayAllocate()) return nullptr;
  return vosmere::report::heap::Counted(VOSMERE_HEAP(calloc)(count, size));
}

void* realloc(void* block, std::size_t size) {
  if (!vosmere::report::heap::MayAllocate()) return nullptr;
  vosmere::report::heap::Uncount(block);
  void* const moved = VOSMERE_HEAP(realloc)(block, size);
  if (!moved && size) vosmere::report::heap::Counted(block);  // it is still there
  return vosmere::report::heap::Counted(moved);
}

void* memalign(std::size_t alignment, std::size_t size) {
  if (!vosmere::report::heap::MayAllocate()) return nullptr;
  return vosmere::report::heap::Counted(VOSMERE_HEAP(memalign)(alignment, size));
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) {
  void* const made = memalign(alignment, size);
  if (!made) return ENOMEM;
  *block = made;
  return 0;
}

void free(void* block) {
  vosmere::report::heap::Free(block);
}

}  // extern "C"
#endif

void* operator new(std::size_t size) {
  if (void* const block = vosmere::report::heap::New(size)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return vosmere::report::heap::New(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return vosmere::report::heap::New(size);
}
void operator delete(void* block) noexcept {
  vosmere::report::heap::Free(block);
}
void operator delete[](void* block) noexcept {
  vosmere::report::heap::Free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  vosmere::report::heap::Free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  vosmere::report::heap::Free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  vosmere::report::heap::Free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  vosmere::report::heap::Free(block);
}
