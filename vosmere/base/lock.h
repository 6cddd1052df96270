#pragma once

#include "vosmere/base/export.h"

namespace vosmere {

/// The library's lock. A class that guards its own data derives from it and holds it around short
/// updates. Re-entrant: a thread that holds the lock may take it again, and releases it as often as
/// it took it.
class VOSMERE_API CKQSynch {
 public:
  CKQSynch();
  CKQSynch(const CKQSynch&) = delete;
  CKQSynch& operator=(const CKQSynch&) = delete;
  virtual ~CKQSynch();

  /// Waits for as long as another thread holds it.
  void Lock();
  /// Only by the thread that holds it.
  void UnLock();
  /// Never waits; true when the calling thread holds it now.
  bool TryLock();

 private:
  // Holds a std::recursive_mutex. Its header is too heavy for one that many others include.
  alignas(void*) unsigned char mutex_[64];
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
