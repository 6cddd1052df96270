// Messages for the error codes of uploads.
#include "vosmere/cpp/upload.h"

namespace vosmere {

const char* ReasonOfUploadError(std::int32_t code) {
  constexpr struct {
    int number;
    const char* reason;
  } kReasons[] = {
      {1, "the request was sent, but the reply is incomplete"},
      {2, "the file does not exist"},
      {3, "the folder does not exist"},
      {5, "the file cannot be read"},
      {8, "memory ran out"},
      {123, "the file name is invalid"},
      {206, "the file name is too long"},
      {222, "it is not a regular file"},
      {223, "the file is too large: a request must be smaller than 4 GiB"},
      {1006, "the file changed during the upload"},
      {1921, "there are too many symbolic links in the path"},
      {12002, "the server did not respond in time"},
      {12005, "the host name is invalid"},
      {12007, "the host name cannot be resolved"},
      {12014, "the server rejected the user name or password"},
      {12017, "the upload was cancelled"},
      {12029, "the server cannot be reached"},
      {12030, "the connection was closed before the reply"},
      {12031, "the connection was closed before the reply"},
      {12037, "the server's certificate has expired or is not valid yet"},
      {12038, "the server's certificate is for another host"},
      {12040, "the server redirects from HTTPS to HTTP"},
      {12045, "the server's certificate is not trusted"},
      {12152, "the reply is not valid HTTP"},
      {12156, "the server redirects too often"},
      {12157, "no HTTPS connection can be made to the server"},
  };
  for (const auto& known : kReasons)
    if (known.number == (code & 0xFFFF)) return known.reason;
  return nullptr;
}

}  // namespace vosmere
