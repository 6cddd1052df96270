// Notification messages.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// A notification: what happened to an item of the user's data, and what else it concerns.
///
/// Setters copy their text; null makes the field null, as it is in a new message. A returned text
/// is owned by the message and valid until it is set again. When memory runs out in a setter, the
/// old text stays and LostTexts counts it. Not thread-safe.
class VOSMERE_API CVSMNotifyMsg {
 public:
  /// A new message of type 0 without texts; null when memory runs out.
  static CVSMNotifyMsg* New();
  /// Frees a message. Null is ignored.
  static void Delete(CVSMNotifyMsg* message);

  CVSMNotifyMsg(const CVSMNotifyMsg&) = delete;
  CVSMNotifyMsg& operator=(const CVSMNotifyMsg&) = delete;

  /// What happened. The sender and the receiver agree on the numbers; the document has names for
  /// some of them (notification_document.h).
  void SetNotifyType(LONG type) { notifyType_ = type; }
  LONG GetNotifyType() const { return notifyType_; }

  // The item.
  void SetName(const WChar* name) { name_.AssignOrNull(name); }
  WChar* GetName() const { return name_.get(); }
  void SetDesc(const WChar* description) { description_.AssignOrNull(description); }
  WChar* GetDesc() const { return description_.get(); }
  void SetLink(const WChar* link) { link_.AssignOrNull(link); }
  WChar* GetLink() const { return link_.get(); }
  /// The item's identity.
  void SetUUID(const WChar* uuid) { uuid_.AssignOrNull(uuid); }
  WChar* GetUUID() const { return uuid_.get(); }

  // The item's parent, and the parent before it was moved: name and identity.
  void SetParent(const WChar* name) { parent_.AssignOrNull(name); }
  WChar* GetParent() const { return parent_.get(); }
  void SetParentID(const WChar* id) { parentID_.AssignOrNull(id); }
  WChar* GetParentID() const { return parentID_.get(); }
  void SetOldParent(const WChar* name) { oldParent_.AssignOrNull(name); }
  WChar* GetOldParent() const { return oldParent_.get(); }
  void SetOldParentID(const WChar* id) { oldParentID_.AssignOrNull(id); }
  WChar* GetOldParentID() const { return oldParentID_.get(); }

  // Another item that the message refers to.
  void SetRefItem(const WChar* name) { refItem_.AssignOrNull(name); }
  WChar* GetRefItem() const { return refItem_.get(); }
  void SetRefItemID(const WChar* id) { refItemID_.AssignOrNull(id); }
  WChar* GetRefItemID() const { return refItemID_.get(); }
  void SetRefItemType(const WChar* type) { refItemType_.AssignOrNull(type); }
  WChar* GetRefItemType() const { return refItemType_.get(); }

 protected:
  CVSMNotifyMsg() = default;
  virtual ~CVSMNotifyMsg();

 private:
  LONG notifyType_ = 0;
  SystemText name_;
  SystemText description_;
  SystemText link_;
  SystemText uuid_;
  SystemText parent_;
  SystemText parentID_;
  SystemText oldParent_;
  SystemText oldParentID_;
  SystemText refItem_;
  SystemText refItemID_;
  SystemText refItemType_;
};

}  // namespace vosmere
