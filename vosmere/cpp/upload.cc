// Messages for the error codes of uploads.
#include "vosmere/cpp/upload.h"

namespace vosmere {

const char* ReasonOfUploadError(std::int32_t code) {
  constexpr struct {
    int number;
    const char* reason;
  } kReasons[] = {
      {1, "all was sent, but the reply was broken off"},
      {2, "there is no such file"},
      {3, "there is no such folder"},
      {5, "the file cannot be read"},
      {8, "there is not enough memory"},
      {123, "that is no name of a file"},
      {206, "the name is too long"},
      {222, "that is not a plain file"},
      {223, "a request has less than 4 GiB"},
      {1006, "the file has changed meanwhile"},
      {1921, "the links lead in circles"},
      {12002, "the server takes too long"},
      {12005, "that is no name of a host"},
      {12007, "the host is not known"},
      {12014, "the server does not take the name and the password"},
      {12017, "the upload was cancelled"},
      {12029, "the server cannot be reached"},
      {12030, "the connection was broken off, and there was no reply"},
      {12031, "the connection was broken off, and there was no reply"},
      {12037, "the server's certificate is out of date"},
      {12038, "the server's certificate is for another host"},
      {12040, "the server leads away from HTTPS"},
      {12045, "the server's certificate is not trusted"},
      {12152, "the reply is not valid HTTP"},
      {12156, "the server leads in circles"},
      {12157, "the server does not speak HTTPS"},
  };
  for (const auto& known : kReasons)
    if (known.number == (code & 0xFFFF)) return known.reason;
  return nullptr;
}

}  // namespace vosmere
