#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/notify/notify_msg.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes one notification. Its texts are written where they are not null, empty ones too.
///
/// The type is written by name: 1000 is "FOLDER_CREATE", 2000 "COLCT_CREATE", 3000 "ITEM_CREATE",
/// and the three numbers after each are its "_MODIFY", "_DELETE" and "_MOVE". Every other type is
/// written as "UNKNOWN".
class VOSMERE_API CWriteVSMNotifyMsg : public CWriteXML {
 public:
  CWriteVSMNotifyMsg() = default;
  ~CWriteVSMNotifyMsg() override;

  /// The message to write, which must outlive the writing. Without one the document is empty.
  void SetVSMNotifyMsg(CVSMNotifyMsg* message) { message_ = message; }

 protected:
  bool FillData() override;

  void AddHead();
  /// Type, title, description, link and identity.
  void FillNotifyItem();
  void FillNotifyType(LONG type);
  /// Where it is, where it was, and what it refers to.
  void FillNotifyItemWithID();
  void AddTail();

 private:
  CVSMNotifyMsg* message_ = nullptr;
};

/// Reads one notification; of several in a document the last. A root element other than "vsmnotify"
/// loads, and gives none.
///
/// Intended: types are written but not read; a message that was read has the type of a new one.
/// What happened is for the receiver to find out from its own data, not to be believed.
class VOSMERE_API CReadVSMNotify : public CReadXML {
 public:
  CReadVSMNotify() = default;
  /// Frees the message unless it was detached.
  ~CReadVSMNotify() override;

  /// The message, now the caller's (CVSMNotifyMsg::Delete frees it); null when there is none. A
  /// message stays until it is detached or another document has been read.
  CVSMNotifyMsg* DetachVSMNotifyMsg() { return message_.Detach(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  OwnedPointer<CVSMNotifyMsg, FreeWith<CVSMNotifyMsg::Delete>> message_;
};

}  // namespace vosmere
