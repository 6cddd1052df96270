// Notification messages.
#include "vosmere/notify/notify_msg.h"

#include <new>

namespace vosmere {

CVSMNotifyMsg::~CVSMNotifyMsg() = default;

CVSMNotifyMsg* CVSMNotifyMsg::New() {
  return new (std::nothrow) CVSMNotifyMsg;
}

void CVSMNotifyMsg::Delete(CVSMNotifyMsg* message) {
  delete message;
}

}  // namespace vosmere
