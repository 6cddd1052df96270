// What a collection has to do with the network: owner, sharing, polling, synchronisation.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// Network side of a collection: owner, sharing, polling, synchronisation.
class VOSMERE_API CColctNetData {
 public:
  /// The shortest polling interval, in the unit of the program that polls; shorter ones are stored
  /// as this.
  static constexpr int kMinPollingInterval = 4;

  CColctNetData() = default;
  /// A copy. Throws std::bad_alloc.
  explicit CColctNetData(const CColctNetData* source);
  /// Copies every field.
  /// Intended: a source without an owner leaves the owner as it was, so that a refresh from the
  /// network never forgets whose collection it is.
  CColctNetData& operator=(const CColctNetData& source);
  virtual ~CColctNetData();

  /// The items keep the user's order.
  void SetOrdered(bool ordered) { ordered_ = ordered; }
  bool IsOrdered() const { return ordered_; }

  /// Null clears.
  void SetOwner(const WChar* owner) { owner_.AssignOrNull(owner); }
  /// May be null.
  WChar* GetOwner() const { return owner_.get(); }

  void SetSharingDomain(int domain) { sharingDomain_ = domain; }
  int GetSharingDomain() const { return sharingDomain_; }

  /// The collection belongs to somebody else.
  void SetBeForeignColct(bool foreign) { foreignColct_ = foreign; }
  bool IsForeignColct() const { return foreignColct_; }

  /// The user's role in a shared collection.
  void SetRole(int role) { role_ = role; }
  int GetRole() const { return role_; }

  /// The collection agrees with its network copy.
  void SetSynced(bool synced) { synced_ = synced; }
  bool IsSynced() const { return synced_; }

  void SetPollingInterval(int interval) {
    pollingInterval_ = interval < kMinPollingInterval ? kMinPollingInterval : interval;
  }
  int GetPollingInterval() const { return pollingInterval_; }

  /// Identity of the scheduled polling event.
  void SetIssuedTimeEventID(int id) { issuedTimeEventID_ = id; }
  int GetIssuedTimeEventID() const { return issuedTimeEventID_; }

  /// Whether the collection is shown expanded.
  void SetColctExpandState(bool expanded) { colctExpandState_ = expanded; }
  bool GetColctExpandState() const { return colctExpandState_; }

 private:
  void CopyAllButOwner(const CColctNetData& source);

  bool ordered_ = false;
  HeapText owner_;
  LONG sharingDomain_ = -1;
  bool foreignColct_ = false;
  LONG role_ = 0;
  bool synced_ = false;
  LONG pollingInterval_ = 20;
  LONG issuedTimeEventID_ = 0;
  bool colctExpandState_ = false;
};

}  // namespace vosmere
