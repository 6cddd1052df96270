// An upload in tests: a small file, and the server that it goes to.
#pragma once

#include <string>

#include "tests/support/files.h"
#include "tests/support/loopback_server.h"
#include "tests/support/wide.h"
#include "vosmere/net/http_upload.h"

namespace vosmere::test {

/// What Post returns for the error with that number.
inline LONG Code(unsigned error) {
  return static_cast<LONG>(0x80070000u | error);
}

/// A request of tests/data to that server, with a `file` of that name. Its body follows an empty
/// line.
inline std::string GoldenRequest(const std::string& name, const LoopbackServer& server,
                                 const std::string& file = "") {
  std::string request = TestData("requests/" + name);
  const auto put = [&](const std::string& word, const std::string& value) {
    if (const auto at = request.find(word); at != request.npos)
      request.replace(at, word.size(), value);
  };
  put("HOST", server.host());
  put("FILE", file);
  put("LENGTH", std::to_string(request.size() - request.find("\r\n\r\n") - 4));
  return request;
}

class Sender {
 public:
  explicit Sender(const std::string& host, const std::string& bytes = "0123") {
    WriteBytes(file(), bytes);
    upload.SetHost(W(host));
    upload.SetPostAcceptor(W("/upload"));
    upload.SetBoundary(W("BOUNDARY"));
    upload.SetTimeouts(2000, 2000);
  }
  /// A file of that many zero bytes, which takes no room on the disk.
  Sender(const std::string& host, std::size_t size) : Sender(host, "") {
    std::filesystem::resize_file(file(), size);
  }

  std::filesystem::path file() const { return folder_ / "notes.txt"; }
  LONG Send() {
    upload.UploadFile(W(file()));
    return upload.GetErrorCode();
  }
  std::string Response() { return OwnedBstr(upload.DetachResponse()).utf8(); }
  std::string Message() const { return Utf8(upload.GetErrorMsg()); }

  CNetUploadFile upload;

 private:
  TempFolder folder_;
};

}  // namespace vosmere::test
