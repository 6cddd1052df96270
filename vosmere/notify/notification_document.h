// Writes and reads the document that stores a notification.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/notify/notify_msg.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes one notification. Texts that are null are left out, empty ones are written. An identity
/// of a parent or of another item is written only together with its name.
///
/// The type is written by name: 1000 is "FOLDER_CREATE", 2000 "COLCT_CREATE" and 3000
/// "ITEM_CREATE"; the three numbers after each are its "_MODIFY", "_DELETE" and "_MOVE". All other
/// types are written as "UNKNOWN".
class VOSMERE_API CWriteVSMNotifyMsg : public CWriteXML {
 public:
  CWriteVSMNotifyMsg() = default;
  ~CWriteVSMNotifyMsg() override;

  /// The message to write, not owned; it must outlive the writing. Without a message the document
  /// is empty.
  void SetVSMNotifyMsg(CVSMNotifyMsg* message) { message_ = message; }

 protected:
  bool FillData() override;

  void AddHead();
  /// Writes type, title, description, link and identity.
  void FillNotifyItem();
  void FillNotifyType(LONG type);
  /// Writes the parent, the old parent and the other item, each with its identity.
  void FillNotifyItemWithID();
  void AddTail();

 private:
  void LoseUnread();

  CVSMNotifyMsg* message_ = nullptr;
};

/// Reads one notification, the last one if the document has several. If the root element is not
/// "vsmnotify", the load succeeds without a message.
///
/// Intended: the type is written but not read, so a message from a document has the type of a new
/// message. The receiver determines from its own data what happened, instead of trusting the
/// message.
class VOSMERE_API CReadVSMNotify : public CReadXML {
 public:
  CReadVSMNotify() = default;
  /// Frees the message unless it was detached.
  ~CReadVSMNotify() override;

  /// Gives the message to the caller, who frees it with CVSMNotifyMsg::Delete. Null when there is
  /// none. A message that is not detached is kept until the next document has been read.
  CVSMNotifyMsg* DetachVSMNotifyMsg() { return message_.Detach(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  OwnedPointer<CVSMNotifyMsg, FreeWith<CVSMNotifyMsg::Delete>> message_;
};

}  // namespace vosmere
