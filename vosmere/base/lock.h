#pragma once

#include <mutex>

#include "vosmere/base/export.h"

namespace vosmere {

/// The library's lock. A class that guards its own data derives from it and holds it around short
/// updates. Re-entrant: a thread that holds the lock may take it again, and releases it as often as
/// it took it.
class VOSMERE_API CKQSynch {
 public:
  CKQSynch() = default;
  CKQSynch(const CKQSynch&) = delete;
  CKQSynch& operator=(const CKQSynch&) = delete;
  virtual ~CKQSynch();

  /// Waits for as long as another thread holds it.
  void Lock() { mutex_.lock(); }
  /// Only by the thread that holds it.
  void UnLock() { mutex_.unlock(); }
  /// Never waits; true when the calling thread holds it now.
  bool TryLock() { return mutex_.try_lock(); }

 private:
  std::recursive_mutex mutex_;
};

/// Holds a lock for the length of a scope, exceptions included.
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
