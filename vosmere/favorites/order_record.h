#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The header of the value in which the shell keeps the menu order of a folder; all of it is kept,
/// so that the order can be written back.
struct VOSMERE_API COrderHead {
  COrderHead() = default;
  virtual ~COrderHead();

  ULONG words[5] = {8, 2, 12, 1, 0};  ///< as stored; the last is the number of records
  bool fromRegistry = false;          ///< whether the words were read, and are not these defaults
};

/// One record of such a value: the place of an item in the menu, and the shell's description of the
/// item. Below `halfWordAt20` stands what is read in the XP layout only.
struct VOSMERE_API COrderRecord {
  COrderRecord() = default;
  COrderRecord(const COrderRecord&) = delete;
  COrderRecord& operator=(const COrderRecord&) = delete;
  virtual ~COrderRecord();

  ULONG recordSize = 0;  ///< bytes
  LONG position = 0;     ///< as stored: from 0 on, or -5 for none
  unsigned short itemSize = 0;
  unsigned short itemFlags = 0;
  ULONG wordAt12 = 0;
  ULONG wordAt16 = 0;
  unsigned short halfWordAt20 = 0;

  OwnedPointer<char, WithArrayDelete> shortName;  ///< 8-bit, zero-terminated; null for none
  LONG shortNameLength = 0;                       ///< bytes, without the zero
  bool padded = false;                            ///< one byte of padding followed the short name
  unsigned char extensionHeader[20] = {};
  HeapText longName;        ///< null for none
  LONG longNameLength = 0;  ///< units
  ULONG trailer[2] = {};    ///< the two words behind the long name

  bool fromOrderValue = false;
  bool spareFlag = false;
};

}  // namespace vosmere
