// An upload in tests: a small file, and the server that it goes to.
#pragma once

#include <string>

#include "tests/support/files.h"
#include "tests/support/loopback_server.h"
#include "tests/support/wide.h"
#include "vosmere/net/http_upload.h"

namespace vosmere::test {

/// What Post returns for an error of that number.
inline LONG Code(unsigned error) {
  return static_cast<LONG>(0x80070000u | error);
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
  /// A file of so many zero bytes, which takes no room on the disk.
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
