#pragma once

#include "vosmere/base/export.h"
#include "vosmere/tags/tag_group.h"

namespace vosmere {

/// The user's tags in groups. It owns its groups and the cells of their list. A group without a
/// name (null or empty) is the default group.
class VOSMERE_API CTagStore {
 public:
  using TagGroupList = TList<CTagGroup*>;

  CTagStore() = default;
  CTagStore(const CTagStore&) = delete;
  CTagStore& operator=(const CTagStore&) = delete;
  virtual ~CTagStore();

  /// Null when memory runs out.
  static CTagGroup* CreateTagGroup();
  static CTagItem* CreateTagItem();
  /// For what no store or group owns. A group is freed with its tags. Null is ignored.
  static void DeleteTagGroup(CTagGroup* group);
  static void DeleteTagItem(CTagItem* item);
  /// Frees every cell from `head` on, with its group. Null is ignored.
  static void DeleteRTagGroupList(TagGroupList* head);

  /// Null when the store is empty.
  TagGroupList* GetTagGroupHead() const { return groups_; }
  /// One of the store's groups, or null.
  CTagGroup* GetDefaultGroup() const { return defaultGroup_; }

  /// Appends the group, takes ownership of it and returns its cell. A group without a name becomes
  /// the default group, also when there is one. When memory runs out, null; the group stays the
  /// caller's.
  TagGroupList* AddTagGroup(CTagGroup* group);
  /// Takes the group out of the store; the caller owns it again. A group that is not there changes
  /// nothing.
  /// Intended: without its default group the store has none, though it may hold another group
  /// without a name.
  void RemoveTagGroup(CTagGroup* group);
  /// Frees every group.
  void DeleteAll();

  /// Frees every group and takes ownership of a list instead, cells and groups; null is the empty
  /// list. The default group is the first without a name.
  void SetRTagGroupHead(TagGroupList* head);
  /// Gives the list to the caller, cells and groups; the store is empty then.
  TagGroupList* DetachRTagGroupHead();

 private:
  TagGroupList* groups_ = nullptr;
  CTagGroup* defaultGroup_ = nullptr;
};

}  // namespace vosmere
