// COrderHead and COrderRecord, the decoded contents of a stored menu order.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The header of the registry value in which the shell stores the menu order of a folder. All of it
/// is kept, so that the order can be written back.
struct VOSMERE_API COrderHead {
  COrderHead() = default;
  virtual ~COrderHead();

  ULONG words[5] = {8, 2, 12, 1, 0};  ///< as stored; the last one is the number of records
  bool fromRegistry = false;          ///< false while the words are these defaults
};

/// One record of that value: the position of an item in the menu, and the shell's description of
/// the item. The members after `halfWordAt20` are filled in the XP layout only, except
/// `fromOrderValue`.
struct VOSMERE_API COrderRecord {
  COrderRecord() = default;
  COrderRecord(const COrderRecord&) = delete;
  COrderRecord& operator=(const COrderRecord&) = delete;
  virtual ~COrderRecord();

  ULONG recordSize = 0;  ///< in bytes, as stored
  LONG position = 0;     ///< as stored: from 0, or -5 for none
  unsigned short itemSize = 0;
  unsigned short itemFlags = 0;
  ULONG wordAt12 = 0;
  ULONG wordAt16 = 0;
  unsigned short halfWordAt20 = 0;

  OwnedPointer<char, WithArrayDelete> shortName;  ///< 8-bit, null-terminated; null if there is none
  LONG shortNameLength = 0;                       ///< in bytes, without the terminating null
  bool padded = false;                            ///< one byte of padding followed the short name
  unsigned char extensionHeader[20] = {};
  HeapText longName;        ///< null if there is none
  LONG longNameLength = 0;  ///< in code units
  ULONG trailer[2] = {};    ///< the two words after the long name

  bool fromOrderValue = false;  // whether it was read from an order value
  bool spareFlag = false;       // not used by the library
};

}  // namespace vosmere
