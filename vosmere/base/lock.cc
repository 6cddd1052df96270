// The out-of-line destructor keeps the class's virtual table in the library, and only there.
#include "vosmere/base/lock.h"

#include <memory>
#include <mutex>
#include <new>

namespace vosmere {
namespace {

using Mutex = std::recursive_mutex;

Mutex& In(unsigned char* bytes) {
  return *std::launder(reinterpret_cast<Mutex*>(bytes));
}

}  // namespace

CKQSynch::CKQSynch() {
  static_assert(sizeof(Mutex) <= sizeof mutex_ && alignof(Mutex) <= alignof(void*));
  new (mutex_) Mutex;
}

CKQSynch::~CKQSynch() {
  std::destroy_at(&In(mutex_));
}

void CKQSynch::Lock() {
  In(mutex_).lock();
}

void CKQSynch::UnLock() {
  In(mutex_).unlock();
}

bool CKQSynch::TryLock() {
  return In(mutex_).try_lock();
}

}  // namespace vosmere
