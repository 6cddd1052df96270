#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// A test of the connection to a server.
class VOSMERE_API CInetSynch {
 public:
  virtual ~CInetSynch();

  /// Posts a small fixed form to "post.php" on the test server.
  /// Intended: both arguments are ignored and no result is examined; whoever runs the server sees
  /// what arrives.
  void UploadColct(CColctNode* collection, int flag);

  /// The server to test with, which may carry a port. Null restores the default, a reserved name
  /// that no server has. Any thread.
  static void SetTestServer(const WChar* host);
};

}  // namespace vosmere
