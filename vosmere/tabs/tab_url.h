#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/lock.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/platform/security_zone.h"

namespace vosmere {

/// One address that a tab has loaded: a cell of a chain (base/chain.h).
class VOSMERE_API CTabUrlItem {
 public:
  CTabUrlItem* prev = this;
  CTabUrlItem* next = nullptr;

  /// Without address, of no known zone, not the top-level page.
  CTabUrlItem() = default;
  /// A cell with a copy of the address; null when memory runs out.
  static CTabUrlItem* New(const WChar* url, LONG zone);
  /// Frees every cell from `head` on. Null is ignored.
  static void DeleteList(CTabUrlItem* head);

  CTabUrlItem(const CTabUrlItem&) = delete;
  CTabUrlItem& operator=(const CTabUrlItem&) = delete;
  virtual ~CTabUrlItem();

  /// Null clears; a text of 2085 units or more is ignored.
  void SetUrl(const WChar* url);
  /// May be null.
  WChar* GetUrl() const { return url_.get(); }

  /// Security zone (platform/security_zone.h).
  void SetZone(LONG zone) { zone_ = zone; }
  LONG GetZone() const { return zone_; }

  /// Whether the address is the tab's page rather than a frame in it.
  void SetTopLevel(bool topLevel) { topLevel_ = topLevel; }
  bool IsTopLevel() const { return topLevel_; }

  /// The browser object that loaded the address; the library only compares it.
  void SetDispatch(void* dispatch) { dispatch_ = dispatch; }
  void* GetDispatch() const { return dispatch_; }

 private:
  HeapText url_;
  LONG zone_ = kZoneUnknown;
  bool topLevel_ = false;
  void* dispatch_ = nullptr;
};

/// The addresses that one tab has loaded, its page and the frames in it, each with its security
/// zone: for showing the page's zone, and for telling when a frame is less trusted than the page.
///
/// May be used from several threads: every public operation holds the object's own lock. The
/// security-zone check (platform/security_zone.h) is asked under that lock, once for each new
/// address.
class VOSMERE_API CTabUrlData : public CKQSynch {
 public:
  CTabUrlData() = default;
  ~CTabUrlData() override;

  /// Records an address that `dispatch` has loaded. Ignored are null, the empty address,
  /// "about:blank", one of 2085 units or more, one that there is no memory for, and every address
  /// while there are more than 150.
  ///
  /// An address that is there already (exactly the same text) only changes: it gets the dispatch
  /// and, when `topLevel`, becomes the page in place of the page before, which is freed. It never
  /// stops being the page. A new address is appended; it takes the place of the page before when
  /// `topLevel`, and of the first address with the same dispatch; null is a dispatch like any
  /// other.
  ///
  /// Intended: the addresses are counted before the lock is taken for the rest, so threads that add
  /// at the same moment may pass the limit, each by one.
  void AddUrl(const WChar* url, bool topLevel, void* dispatch);

  /// Forgets every address.
  void ClearData();

  /// The zone to show: the page's; without a page, the highest of all; 5 for no addresses. Stores
  /// whether some address has a higher zone than the page, and the number of addresses.
  /// Intended: the page is the last address that was loaded as one, while AddUrl replaces the
  /// first; there is one at most unless a derived class marks more.
  LONG GetZone(bool* lessTrustedFrame, int* count);

  /// Stores a chain of copies that hold address and zone alone, to be freed with
  /// CTabUrlItem::DeleteList, and returns their number. Without memory for all of them, null and 0.
  int GetUrlItemList(CTabUrlItem** list);

  int GetNumberItem();

 protected:
  // These take no lock: a derived class calls them while it holds it.

  /// The first of the tab's items, or null.
  CTabUrlItem* GetHead() const { return head_; }
  /// From here on no address is the page.
  void UnsetTopLevelFlag();
  /// The highest zone of all; 0 for no addresses.
  LONG GetHighestZone() const;
  /// Unlinks and frees one of the tab's items; true when it was the head.
  bool DeleteTabUrlItem(CTabUrlItem* item);
  /// Frees the first item with that dispatch; false when there is none.
  bool FilterOutTheSameDispatch(void* dispatch);
  /// Changes the item with exactly that address as AddUrl says; false when there is none.
  bool CheckTheSameUrlItem(const WChar* url, bool topLevel, void* dispatch);
  LONG InternalGetZone(bool* lessTrustedFrame, int* count) const;

 private:
  void DeleteFirstTopLevel();
  int Count() const;

  CTabUrlItem* head_ = nullptr;
};

}  // namespace vosmere
