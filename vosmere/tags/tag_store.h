// The user's tags.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/tags/tag_group.h"

namespace vosmere {

/// The user's tags, in groups. Owns the groups and the cells of their list. A group whose name is
/// null or empty is the default group. Not thread-safe.
class VOSMERE_API CTagStore {
 public:
  using TagGroupList = TList<CTagGroup*>;

  CTagStore() = default;
  CTagStore(const CTagStore&) = delete;
  CTagStore& operator=(const CTagStore&) = delete;
  virtual ~CTagStore();

  /// A new group or tag without a name; null when memory runs out. The caller owns it until it is
  /// added.
  static CTagGroup* CreateTagGroup();
  static CTagItem* CreateTagItem();
  /// Frees a group, with its tags, or a tag that the caller owns. Null is ignored.
  static void DeleteTagGroup(CTagGroup* group);
  static void DeleteTagItem(CTagItem* item);
  /// Frees every cell from `head` on with its group. Null is ignored.
  static void DeleteRTagGroupList(TagGroupList* head);

  /// The list of groups, still owned by the store; null when there are none.
  TagGroupList* GetTagGroupHead() const { return groups_; }
  /// The default group, owned by the store, or null.
  CTagGroup* GetDefaultGroup() const { return defaultGroup_; }

  /// Appends the group, takes ownership of it and returns its cell. A group without a name becomes
  /// the default group, even if there already is one. When memory runs out, returns null and the
  /// caller still owns the group.
  TagGroupList* AddTagGroup(CTagGroup* group);
  /// Removes the group from the store and gives it to the caller. A group that is not in the store
  /// is ignored.
  /// Intended: after the default group has been removed there is none, even if another group has no
  /// name.
  void RemoveTagGroup(CTagGroup* group);
  /// Frees all groups.
  void DeleteAll();

  /// Frees all groups, then takes ownership of another list and its groups; null is the empty list.
  /// The first group without a name becomes the default group.
  void SetRTagGroupHead(TagGroupList* head);
  /// Gives the list with its groups to the caller, who frees it with DeleteRTagGroupList. The store
  /// is empty then.
  TagGroupList* DetachRTagGroupHead();

 private:
  TagGroupList* groups_ = nullptr;
  CTagGroup* defaultGroup_ = nullptr;
};

}  // namespace vosmere
