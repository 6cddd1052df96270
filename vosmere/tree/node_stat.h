#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// When an item was added, changed and visited, whether it has unseen news, and the user's flag.
/// Times are seconds since 1970-01-01 00:00 UTC and may be any 32-bit value, also negative.
class VOSMERE_API CNodeStat {
 public:
  /// Which times SetStatTime sets.
  static constexpr ULONG kAdded = 0x1;
  static constexpr ULONG kModified = 0x2;
  static constexpr ULONG kLastVisited = 0x4;

  /// All three times are the same reading of the clock; read, without a flag.
  CNodeStat();
  CNodeStat(const CNodeStat&) = default;
  CNodeStat& operator=(const CNodeStat&) = default;
  virtual ~CNodeStat();

  /// Sets the times whose bit is in `mask`; the other arguments are ignored.
  void SetStatTime(LONG added, LONG modified, LONG lastVisited, ULONG mask);
  /// Stores each time whose pointer is not null.
  void GetStatTime(LONG* added, LONG* modified, LONG* lastVisited) const;
  /// The bits of the times that were ever set; the others are from the clock.
  ULONG GetSetTimes() const { return setTimes_; }

  /// All three as they were, and which of them had been set.
  void RestoreTimes(LONG added, LONG modified, LONG lastVisited, ULONG setTimes);

  void MarkAsUnread(bool unread) { unread_ = unread; }
  bool IsUnread() const { return unread_; }

  /// 0 means no flag.
  void SetFlag(int flag) { flag_ = flag; }
  int GetFlag() const { return flag_; }

 private:
  LONG added_;
  LONG modified_;
  LONG lastVisited_;
  bool unread_ = false;
  unsigned char setTimes_ = 0;
  LONG flag_ = 0;
};

}  // namespace vosmere
