// Uploading a file to a web server.
#pragma once

#include <string>
#include <vector>

namespace vosmere::tool {

struct PostOptions {
  std::string host;  ///< may carry a port
  std::string path;  ///< on the server
  std::string file;
  std::vector<std::string> fields;  ///< "name=value"
  std::string user;                 ///< empty for none; the password is asked for
  bool secure = false;
  bool clean = false;
  std::string output;   ///< where the reply goes, "-" for the standard output; empty prints it
  bool dryRun = false;  ///< prints the request instead of sending it
};

/// Prints or writes the server's reply and returns the exit code. Throws Failure.
int Post(const PostOptions& options);

}  // namespace vosmere::tool
