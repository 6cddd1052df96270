// Memory for heap texts, and the per-thread count of lost texts.
#include "vosmere/base/owned_text.h"

#include <new>

namespace vosmere {
namespace {

// Shared by all empty texts. Not const, since the getters return WChar*, but never to be written
// to.
WChar emptyText[1] = {0};

// One count per thread, so that a load is not blamed for what another thread lost.
thread_local unsigned long lostTexts = 0;
thread_local unsigned long cutTexts = 0;

}  // namespace

unsigned long LostTexts() {
  return lostTexts;
}

unsigned long CutTexts() {
  return cutTexts;
}

void detail::CountCutText() {
  ++cutTexts;
}

void detail::CountLostText() {
  ++lostTexts;
}

void detail::ThrowNoMemory() {
  throw std::bad_alloc();
}

WChar* HeapTextStorage::Copy(WideView text) {
  if (text.empty()) return emptyText;
  auto* const copy = new (std::nothrow) WChar[text.size + 1];
  if (!copy) return nullptr;
  std::memcpy(copy, text.data, text.size * sizeof(WChar));
  copy[text.size] = 0;
  return copy;
}

void HeapTextStorage::Free(WChar* text) {
  if (text != emptyText) delete[] text;
}

WChar* HeapTextStorage::Empty() {
  return emptyText;
}

}  // namespace vosmere
