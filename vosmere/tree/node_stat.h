// The statistics of an item.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// When an item was added, modified and last visited, whether it is unread, and the user's flag.
/// Times are in seconds since 1970-01-01 00:00 UTC; every 32-bit value is allowed, negative ones
/// too.
class VOSMERE_API CNodeStat {
 public:
  /// Bits for the mask of SetStatTime.
  static constexpr ULONG kAdded = 0x1;
  static constexpr ULONG kModified = 0x2;
  static constexpr ULONG kLastVisited = 0x4;

  /// All three times are the current time, from one reading of the clock, so they are equal. Not
  /// unread, no flag.
  CNodeStat();
  CNodeStat(const CNodeStat&) = default;
  CNodeStat& operator=(const CNodeStat&) = default;
  virtual ~CNodeStat();

  /// Sets the times whose bit is in `mask`. The other arguments are ignored.
  void SetStatTime(LONG added, LONG modified, LONG lastVisited, ULONG mask);
  /// Stores each time whose pointer is not null.
  void GetStatTime(LONG* added, LONG* modified, LONG* lastVisited) const;
  /// The bits of the times that SetStatTime has set. The other times are still those of the
  /// constructor.
  ULONG GetSetTimes() const { return setTimes_; }

  /// Sets all three times, and which of them count as set, as GetStatTime and GetSetTimes gave
  /// them.
  void RestoreTimes(LONG added, LONG modified, LONG lastVisited, ULONG setTimes);

  /// Whether the item has changes that the user has not seen.
  void MarkAsUnread(bool unread) { unread_ = unread; }
  bool IsUnread() const { return unread_; }

  /// The user's flag; 0 means none.
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
