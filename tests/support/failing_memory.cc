#include "tests/support/failing_memory.h"

#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr long kNoLimit = std::numeric_limits<long>::max();

thread_local long live = 0;
thread_local long successesLeft = kNoLimit;
thread_local bool failed = false;

void* Allocate(std::size_t size) noexcept {
  if (!vosmere::test::MayAllocate()) return nullptr;
  void* const block = std::malloc(size ? size : 1);
  if (block) ++live;
  return block;
}

void* AllocateOrThrow(std::size_t size) {
  if (void* const block = Allocate(size)) return block;
  throw std::bad_alloc();
}

void Free(void* block) noexcept {
  if (block) --live;
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void operator delete(void* block) noexcept {
  Free(block);
}
void operator delete[](void* block) noexcept {
  Free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  Free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  Free(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
  Free(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
  Free(block);
}

namespace vosmere::test {

bool MayAllocate() {
  if (successesLeft == 0) {
    failed = true;
    return false;
  }
  if (successesLeft != kNoLimit) --successesLeft;
  return true;
}

long LiveAllocations() {
  return live;
}

FailingMemory::FailingMemory(long successes) {
  successesLeft = successes;
  failed = false;
}

FailingMemory::~FailingMemory() {
  successesLeft = kNoLimit;
}

bool FailingMemory::Failed() const {
  return failed;
}

}  // namespace vosmere::test
