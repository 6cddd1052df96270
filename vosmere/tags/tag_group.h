// Groups of tags.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/list.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/tags/tag_item.h"

namespace vosmere {

/// A group of tags. Owns its tags and the cells of their list. Created and freed by CTagStore
/// (tag_store.h). Not thread-safe.
class VOSMERE_API CTagGroup {
 public:
  using TagItemList = TList<CTagItem*>;

  CTagGroup(const CTagGroup&) = delete;
  CTagGroup& operator=(const CTagGroup&) = delete;
  virtual ~CTagGroup();

  /// Null makes the name null. A store checks the name only when the group is added to it.
  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  /// Null in a new group. Owned by the group.
  WChar* GetName() const { return name_.get(); }

  /// The list of tags, still owned by the group; null when there are none.
  TagItemList* GetTagItemHead() const { return items_; }
  /// Appends the tag, takes ownership of it and returns its cell. When memory runs out, returns
  /// null and the caller still owns the tag.
  TagItemList* AddTagItem(CTagItem* item);
  /// Removes the tag and frees it with its cell. Returns false, with nothing freed, when it is not
  /// in the group.
  bool DeleteTagItem(CTagItem* item);
  /// Frees all tags.
  void DeleteAll();

  /// Sorts the tags by name, from A to Z if `ascending` is true (sort_tags.h).
  void SortTagItem(bool ascending);

 protected:
  friend class CTagStore;
  CTagGroup() = default;

 private:
  TagItemList* items_ = nullptr;
  SystemText name_;
};

}  // namespace vosmere
