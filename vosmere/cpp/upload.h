// Posting a file or a document to a web server, as a form.
//
//   Result<Reply> reply = Upload("www.example:8080", "/receive").SendFile(path);
//   if (!reply) return Complain(reply.error());  // www.example:8080: the host is not known
//   if (!reply->IsOk()) ...                      // the server says no: reply->status
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <utility>

#include "vosmere/base/export.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/result.h"
#include "vosmere/cpp/text.h"
#include "vosmere/net/http_upload.h"

namespace vosmere {

/// For people: what the code of a failed upload (CNetUploadFile::GetErrorCode) means; null when it
/// is none of those that are known.
VOSMERE_API const char* ReasonOfUploadError(std::int32_t code);

/// What the server answered.
struct Reply {
  int status = 0;              ///< 200, 404, ...
  std::string text;            ///< in UTF-8
  bool wasRedirected = false;  ///< the server leads elsewhere: what was sent did not arrive there
  bool isCut = false;          ///< the reply is too long to be kept, and this is its beginning

  /// Whether it was delivered.
  bool IsOk() const { return status >= 200 && status < 300 && !wasRedirected; }
};

/// One upload, in the form that browsers send (CNetUploadFile::SetClean). Setters return the
/// upload, so that they can stand in a row. Nothing is thrown but std::bad_alloc.
class Upload {
 public:
  /// Whether to go on, after so many bytes of all. It must not throw.
  using Progress = std::function<bool(std::uint32_t sent, std::uint32_t total)>;

  /// The server's name, which may carry a port, and the path on it.
  Upload(const Wide& host, const Wide& path) : server_(ToUtf8(host)) {
    upload_.SetClean(true);
    Set([&] {
      upload_.SetHost(host);
      upload_.SetPostAcceptor(path);
    });
  }
  Upload(const Upload&) = delete;
  Upload& operator=(const Upload&) = delete;

  /// A field of the form. One that does not fit (all together have 1024 bytes) fails the upload.
  Upload& Field(const Wide& name, const Wide& value) {
    const std::size_t before = std::strlen(upload_.GetParaString());
    upload_.AddParameter(name, value);
    if (std::strlen(upload_.GetParaString()) == before && error_.reason.empty())
      error_ = Error(server_, "the field '" + ToUtf8(name) + "' does not fit into the form");
    return *this;
  }
  /// HTTPS.
  Upload& Secure() {
    upload_.SetSecure(true);
    return *this;
  }
  /// For a server that asks who is there.
  Upload& Login(const Wide& user, const Wide& password) {
    return Set([&] {
      upload_.SetUserName(user);
      upload_.SetPassword(password);
    });
  }
  Upload& OnProgress(Progress progress) {
    progress_ = std::move(progress);
    return *this;
  }

  // Each sends, once for each upload, and waits for the reply. A failure is about the server or the
  // file, as its `source` says; its `systemError` is that of Windows on every system.

  /// A file, as the field `field`.
  Result<Reply> SendFile(const Wide& path, const Wide& field = "WholeFile") {
    Set([&] {
      upload_.SetLocalFile(path);
      upload_.SetFieldName(field);
    });
    return Send(ToUtf8(path), [&] { upload_.Post(); });
  }
  /// A document under a name, as the field "PartialUpload".
  Result<Reply> SendText(const Wide& name, const Wide& text) {
    return Send(ToUtf8(name), [&] { upload_.UploadPartialFile(name, text); });
  }

 private:
  template <class Setter>
  Upload& Set(Setter setter) {
    detail::SetOrThrow(setter);
    return *this;
  }

  template <class Post>
  Result<Reply> Send(std::string file, Post post) {
    if (!error_.reason.empty()) return error_;
    error_ = Error(server_, "this upload was sent already");
    if (progress_) upload_.SetProgress(&Upload::CallProgress, this);
    post();
    if (const std::int32_t code = upload_.GetErrorCode()) return ErrorOf(code, std::move(file));
    const SystemString text(upload_.DetachResponse());
    return Reply{upload_.GetStatus(), ToUtf8(WideView(text.get(), SysStringLen(text.get()))),
                 upload_.WasRedirected(), upload_.IsResponseCut()};
  }

  Error ErrorOf(std::int32_t code, std::string file) const {
    constexpr unsigned kFirstOfHttp = 12000;
    const unsigned number = static_cast<unsigned>(code) & 0xFFFF;
    const char* const reason = ReasonOfUploadError(code);
    Error error(code < 0 && number < kFirstOfHttp ? std::move(file) : server_,
                reason ? reason : "error " + std::to_string(number));
    error.systemError = number;
    return error;
  }

  static bool CallProgress(void* self, std::uint32_t sent, std::uint32_t total) noexcept {
    return static_cast<Upload*>(self)->progress_(sent, total);
  }

  std::string server_;
  CNetUploadFile upload_;
  Progress progress_;
  Error error_;  // why it cannot be sent
};

}  // namespace vosmere
