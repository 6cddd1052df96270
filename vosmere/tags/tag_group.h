#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/list.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/tags/tag_item.h"

namespace vosmere {

/// A group of tags. It owns its tags and the cells of their list. Made and freed by CTagStore
/// (tag_store.h).
class VOSMERE_API CTagGroup {
 public:
  using TagItemList = TList<CTagItem*>;

  CTagGroup(const CTagGroup&) = delete;
  CTagGroup& operator=(const CTagGroup&) = delete;
  virtual ~CTagGroup();

  /// Null clears. A store looks at the name only when it takes the group.
  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  /// Null until set.
  WChar* GetName() const { return name_.get(); }

  /// Null when the group is empty.
  TagItemList* GetTagItemHead() const { return items_; }
  /// Appends the tag, takes ownership of it and returns its cell. When memory runs out, null; the
  /// tag stays the caller's.
  TagItemList* AddTagItem(CTagItem* item);
  /// Frees the tag with its cell. False, with nothing freed, when it is not in the group.
  bool DeleteTagItem(CTagItem* item);
  /// Frees every tag.
  void DeleteAll();

  /// Sorts the tags by name (sort_tags.h).
  void SortTagItem(bool ascending);

 protected:
  friend class CTagStore;
  CTagGroup() = default;

 private:
  TagItemList* items_ = nullptr;
  SystemText name_;
};

}  // namespace vosmere
