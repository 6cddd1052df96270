#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/list.h"
#include "vosmere/base/lock.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// One toolbar band of the browser window: a plain record.
struct VOSMERE_API TBARBANDINFO {
  int size = 20;         ///< a constant of the window code's
  WChar clsid[40] = {};  ///< class identifier of the component that provides the band
  WChar title[260] = {};
  bool enabled = false;
  bool visible = true;
  bool hasContainerData = false;  ///< whether the next three are known
  int index = 0;                  ///< place in the window's band container
  int style = 0;
  int width = 50;
  int reserved1 = 0;
  int reserved2 = 0;

  /// Each takes what fits of a text, whole characters only; null empties.
  void SetClsid(const WChar* text);
  void SetTitle(const WChar* text);
};

/// The toolbar bands, in order. It owns the records and guards them: whoever walks over the chain
/// or changes a record that others may see holds the lock meanwhile.
class VOSMERE_API CTBarBandInfo : public CKQSynch {
 public:
  CTBarBandInfo() = default;
  ~CTBarBandInfo() override;

  /// Null when there is none.
  TList<TBARBANDINFO*>* GetRBandInfoItemHead() const { return head_; }

  /// Adds a copy of the record at the end, under the lock, and returns the copy, which stays the
  /// list's; null, with nothing added, when memory runs out.
  TBARBANDINFO* AddBandInfoCopy(const TBARBANDINFO* band);

 private:
  TList<TBARBANDINFO*>* head_ = nullptr;
};

}  // namespace vosmere
