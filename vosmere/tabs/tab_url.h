// The addresses that a tab has loaded, with their security zones.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/lock.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/platform/security_zone.h"

namespace vosmere {

/// One address that a tab has loaded; a cell of a chain (base/chain.h). Not thread-safe.
class VOSMERE_API CTabUrlItem {
 public:
  CTabUrlItem* prev = this;
  CTabUrlItem* next = nullptr;

  /// An item without an address, of unknown zone, not top-level.
  CTabUrlItem() = default;
  /// A cell with a copy of the address, in no chain; null when memory runs out. The caller owns it.
  static CTabUrlItem* New(const WChar* url, LONG zone);
  /// Frees every cell from `head` on. Null is ignored.
  static void DeleteList(CTabUrlItem* head);

  CTabUrlItem(const CTabUrlItem&) = delete;
  CTabUrlItem& operator=(const CTabUrlItem&) = delete;
  virtual ~CTabUrlItem();

  /// Null makes it null. A text of 2085 code units or more is ignored.
  void SetUrl(const WChar* url);
  /// May be null. Owned by the item.
  WChar* GetUrl() const { return url_.get(); }

  /// The security zone, see platform/security_zone.h.
  void SetZone(LONG zone) { zone_ = zone; }
  LONG GetZone() const { return zone_; }

  /// Whether this is the address of the tab's page, not of a frame in the page.
  void SetTopLevel(bool topLevel) { topLevel_ = topLevel; }
  bool IsTopLevel() const { return topLevel_; }

  /// Identifies the browser object that loaded the address. Only compared, never dereferenced.
  void SetDispatch(void* dispatch) { dispatch_ = dispatch; }
  void* GetDispatch() const { return dispatch_; }

 private:
  HeapText url_;
  LONG zone_ = kZoneUnknown;
  bool topLevel_ = false;
  void* dispatch_ = nullptr;
};

/// The addresses that one tab has loaded, those of its page and of the frames in it, each with its
/// security zone. Used to show the zone of the page, and to warn of frames that are less trusted
/// than the page.
///
/// Thread-safe: every public operation holds the object's own lock. The check for the security zone
/// (platform/security_zone.h) is called with this lock held, once for each new address.
class VOSMERE_API CTabUrlData : public CKQSynch {
 public:
  CTabUrlData() = default;
  ~CTabUrlData() override;

  /// Records an address that `dispatch` has loaded. Ignored are null, the empty text,
  /// "about:blank", texts of 2085 code units or more, and any address while there are more than
  /// 150. An address is also ignored when memory runs out; LostTexts counts it (base/owned_text.h).
  ///
  /// If exactly this address is recorded already, it gets the new dispatch and, if `topLevel` is
  /// true, becomes the address of the page; the one that was the page's before is removed. It does
  /// not lose that state when `topLevel` is false. Otherwise a new item is appended; the first item
  /// with the same dispatch is removed and, if `topLevel` is true, also the one of the previous
  /// page. Null is a dispatch like any other.
  ///
  /// Intended: the number of addresses is checked before the lock is taken for the rest, so threads
  /// that add at the same time can exceed the limit by one address each.
  void AddUrl(const WChar* url, bool topLevel, void* dispatch);

  /// Removes all addresses.
  void ClearData();

  /// Returns the zone to show: that of the page, or the highest of all zones if there is no page,
  /// or kZoneUnknown (5) if there is no address. Stores whether any address has a higher zone than
  /// the page, and the number of addresses.
  /// Intended: of several top-level addresses this uses the last, whereas AddUrl removes the first.
  /// There are never several unless a derived class makes more.
  LONG GetZone(bool* lessTrustedFrame, int* count);

  /// Stores a chain of copies of the addresses and their zones, without dispatch and top-level
  /// state, and returns their number. The caller frees the chain with CTabUrlItem::DeleteList. When
  /// memory runs out, stores null, returns 0, and LostTexts counts it.
  int GetUrlItemList(CTabUrlItem** list);

  /// The number of addresses.
  int GetNumberItem();

 protected:
  // These do not lock. A derived class must hold the lock when it calls them.

  /// The first item, or null. Owned by this object.
  CTabUrlItem* GetHead() const { return head_; }
  /// Afterwards no address is top-level.
  void UnsetTopLevelFlag();
  /// The highest of all zones; 0 if there is no address.
  LONG GetHighestZone() const;
  /// Unlinks and frees an item of this object. Returns true when it was the first.
  bool DeleteTabUrlItem(CTabUrlItem* item);
  /// Frees the first item with this dispatch. Returns false when there is none.
  bool FilterOutTheSameDispatch(void* dispatch);
  /// Updates the item with exactly this address as AddUrl does. Returns false when there is none.
  bool CheckTheSameUrlItem(const WChar* url, bool topLevel, void* dispatch);
  /// GetZone without the lock.
  LONG InternalGetZone(bool* lessTrustedFrame, int* count) const;

 private:
  void DeleteFirstTopLevel();
  int Count() const;

  CTabUrlItem* head_ = nullptr;
};

}  // namespace vosmere
