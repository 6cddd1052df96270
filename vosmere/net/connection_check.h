// CInetSynch, a test of the connection to a server.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// Tests the connection to a server by sending it a form.
class VOSMERE_API CInetSynch {
 public:
  virtual ~CInetSynch();

  /// Posts a small fixed form to "post.php" on the test server. Blocks for as long as CNetBase's
  /// default time limits allow.
  /// Intended: both arguments are ignored and no result is examined; the operator of the server
  /// sees what arrives.
  void UploadColct(CColctNode* collection, int flag);

  /// The server to test with, optionally with a port (`name:8080`); it is copied. Null restores the
  /// default, a reserved name that no server has. Thread-safe.
  static void SetTestServer(const WChar* host);
};

}  // namespace vosmere
