// Tells other modules of a change: a notification as a document, and read from it. Readers do not
// keep the type of a change.
//
// Prints: ITEM_CREATE: Weather in News
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const ParserThread parser;  // readers below the layer need it
  const Notification message(CVSMNotifyMsg::New());
  if (!message) return 1;  // no memory
  message->SetNotifyType(3000);
  message->SetName(Wide("Weather"));
  message->SetParent(Wide("News"));
  CWriteVSMNotifyMsg writer;
  writer.SetVSMNotifyMsg(message.get());
  const SystemString document(writer.GetXMLBSTR());

  CReadVSMNotify reader;
  if (!reader.LoadBSTRXML(document.get())) return 1;
  const Notification received(reader.DetachVSMNotifyMsg());
  if (ToUtf8(document.get()).find("ITEM_CREATE") != std::string::npos) std::cout << "ITEM_CREATE: ";
  std::cout << ToUtf8(received->GetName()) << " in " << ToUtf8(received->GetParent()) << '\n';
}
