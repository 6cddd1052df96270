// The library's lock, and a guard that releases it at the end of a scope.
#pragma once

#include "vosmere/base/export.h"

namespace vosmere {

/// A recursive mutex: a thread that holds the lock may lock it again, and must unlock it as often
/// as it locked it. Classes that protect their own data derive from it; they hold it for short
/// updates only.
class VOSMERE_API CKQSynch {
 public:
  CKQSynch();
  CKQSynch(const CKQSynch&) = delete;
  CKQSynch& operator=(const CKQSynch&) = delete;
  virtual ~CKQSynch();

  /// Locks; waits while another thread holds the lock.
  void Lock();
  /// Unlocks. Undefined unless the calling thread holds the lock.
  void UnLock();
  /// Locks without waiting. True when the calling thread holds the lock afterwards.
  bool TryLock();

 private:
  // Holds a std::recursive_mutex. Its header is too heavy for one that many others include.
  alignas(void*) unsigned char mutex_[64];
};

/// Locks for the length of a scope, and unlocks also when an exception leaves it.
class SynchGuard {
 public:
  explicit SynchGuard(CKQSynch& synch) : synch_(synch) { synch_.Lock(); }
  SynchGuard(const SynchGuard&) = delete;
  SynchGuard& operator=(const SynchGuard&) = delete;
  ~SynchGuard() { synch_.UnLock(); }

 private:
  CKQSynch& synch_;
};

}  // namespace vosmere
