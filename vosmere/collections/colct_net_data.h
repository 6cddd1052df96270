// The network settings of a collection.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// The network settings of a collection: owner, sharing, polling, synchronisation. Not thread-safe.
class VOSMERE_API CColctNetData {
 public:
  /// The shortest polling interval; shorter ones are raised to it. The unit is up to the program
  /// that polls.
  static constexpr int kMinPollingInterval = 4;

  CColctNetData() = default;
  /// A copy of every field. Throws std::bad_alloc when memory runs out.
  explicit CColctNetData(const CColctNetData* source);
  /// Copies every field.
  /// Intended: if the source has no owner (null), the present owner stays, so that a refresh from
  /// the network does not lose it.
  CColctNetData& operator=(const CColctNetData& source);
  virtual ~CColctNetData();

  /// Whether the items keep the order that the user gave them.
  void SetOrdered(bool ordered) { ordered_ = ordered; }
  bool IsOrdered() const { return ordered_; }

  /// The name of the owner. Copied; null makes it null.
  void SetOwner(const WChar* owner) { owner_.AssignOrNull(owner); }
  /// May be null. Owned by the object.
  WChar* GetOwner() const { return owner_.get(); }

  /// -1 in a new object.
  void SetSharingDomain(int domain) { sharingDomain_ = domain; }
  int GetSharingDomain() const { return sharingDomain_; }

  /// Whether the collection belongs to another user.
  void SetBeForeignColct(bool foreign) { foreignColct_ = foreign; }
  bool IsForeignColct() const { return foreignColct_; }

  /// The user's role in a shared collection.
  void SetRole(int role) { role_ = role; }
  int GetRole() const { return role_; }

  /// Whether the collection is synchronised with a copy on the network.
  void SetSynced(bool synced) { synced_ = synced; }
  bool IsSynced() const { return synced_; }

  /// 20 in a new object.
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
