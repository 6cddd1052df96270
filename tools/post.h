// The verb "post": uploads a file to a web server.
#pragma once

#include <string>
#include <vector>

#include "vosmere/net/http_session.h"

namespace vosmere::tool {

struct PostOptions {
  std::string host;  ///< may contain a port: "name:8080"
  std::string path;  ///< the path on the server
  std::string file;
  std::vector<std::string> fields;  ///< "name=value"
  std::string user;                 ///< empty for none; otherwise the password is read
  std::string
      login;  ///< the name for HTTP authentication; empty for none, otherwise the password is read
  std::string proxy;  ///< "name:port"; empty for the system's
  double connectLimit = CNetBase::kConnectTimeout / 1000.0;    ///< in seconds
  double transferLimit = CNetBase::kTransferTimeout / 1000.0;  ///< in seconds
  bool secure = false;
  bool clean = false;
  std::string output;  ///< the file for the reply, "-" for standard output; empty prints it
  unsigned replyLimit = 100000;  ///< in KiB, for a reply that is printed
  bool dryRun = false;           ///< prints the request instead of sending it
  bool json = false;             ///< prints the reply as JSON
};

/// Uploads the file, prints or writes the reply and returns the exit code. Throws Failure.
int Post(const PostOptions& options);

}  // namespace vosmere::tool
