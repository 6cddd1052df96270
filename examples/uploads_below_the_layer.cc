// Uploads with the classes below the layer, which have more settings.
//
// Prints: error 12029
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

void Prepare(CNetBase& net) {  // what every request has
  net.SetHost(Wide("127.0.0.1:9"));
  net.SetPostAcceptor(Wide("/receive"));
  net.SetTimeouts(5000, 5000);
}

int main() {
  CNetUploadFile upload;
  Prepare(upload);
  upload.AddParameter(Wide("owner"), Wide("ann"));
  if (!upload.UploadPartialFile(Wide("list.opml"), Wide("<opml/>")))
    std::cout << "error " << (upload.GetErrorCode() & 0xFFFF) << '\n';

  CInetSynch::SetTestServer(Wide("127.0.0.1:9"));  // of the program that uses the library
}
