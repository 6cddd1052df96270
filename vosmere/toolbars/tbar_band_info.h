// The toolbar bands of the browser window.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/list.h"
#include "vosmere/base/lock.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// One toolbar band of the browser window. A plain record that may be copied.
struct VOSMERE_API TBARBANDINFO {
  int size = 20;         ///< a constant of the window code; the library does not use it
  WChar clsid[40] = {};  ///< class identifier of the component that provides the band
  WChar title[260] = {};
  bool enabled = false;
  bool visible = true;
  bool hasContainerData = false;  ///< whether the next three fields are known
  int index = 0;                  ///< position in the window's band container
  int style = 0;
  int width = 50;
  int reserved1 = 0;
  int reserved2 = 0;

  /// Copy as much of a text as fits, without splitting a surrogate pair. Null is treated as the
  /// empty text.
  void SetClsid(const WChar* text);
  void SetTitle(const WChar* text);
};

/// A list of toolbar bands. Owns the records. Adding locks the list; any other code must hold the
/// lock while it iterates over the list or changes a record that other threads may use.
class VOSMERE_API CTBarBandInfo : public CKQSynch {
 public:
  CTBarBandInfo() = default;
  ~CTBarBandInfo() override;

  /// The list, still owned by this object; null when there are no bands.
  TList<TBARBANDINFO*>* GetRBandInfoItemHead() const { return head_; }

  /// Appends a copy of the record, under the lock, and returns the copy, which the list owns. When
  /// memory runs out, returns null and nothing is added.
  TBARBANDINFO* AddBandInfoCopy(const TBARBANDINFO* band);

 private:
  TList<TBARBANDINFO*>* head_ = nullptr;
};

}  // namespace vosmere
