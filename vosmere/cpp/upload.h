// Uploading a file or a text to a web server as a form.
//
//   Result<Reply> reply = Upload("www.example:8080", "/receive").SendFile(path);
//   if (!reply) return Complain(reply.error());  // www.example:8080: the server cannot be reached
//   if (!reply->IsOk()) ...                      // not delivered: reply->status
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

/// A message for the error code of a failed upload (CNetUploadFile::GetErrorCode): a static text in
/// English, or null for an unknown code.
VOSMERE_API const char* ReasonOfUploadError(std::int32_t code);

/// The reply of the server.
struct Reply {
  int status = 0;              ///< the HTTP status: 200, 404, ...
  std::string text;            ///< the body, in UTF-8
  bool wasRedirected = false;  ///< the server redirected the request; the form was not delivered
  bool isCut = false;          ///< the body is too long to be kept; `text` is its beginning

  /// Whether the form was delivered: the status is 2xx, without a redirection.
  bool IsOk() const { return status >= 200 && status < 300 && !wasRedirected; }
};

/// One upload, in the form that browsers send (CNetUploadFile::SetClean). Setters return the
/// object, so that calls can be chained. The only exception thrown is std::bad_alloc.
class Upload {
 public:
  /// Called with the number of bytes sent and of all bytes; returns false to cancel. Must not
  /// throw.
  using Progress = std::function<bool(std::uint32_t sent, std::uint32_t total)>;

  /// `host` may contain a port; `path` is the path on the server. A host that cannot be one is an
  /// error when the form is sent.
  Upload(const Wide& host, const Wide& path) : server_(ToUtf8(host)) {
    upload_.SetClean(true);
    Set([&] {
      upload_.SetHost(host);
      upload_.SetPostAcceptor(path);
    });
  }
  Upload(const Upload&) = delete;
  Upload& operator=(const Upload&) = delete;

  /// Adds a field to the form; null as its value is empty. All fields together may have 1024 bytes;
  /// if this one does not fit, or has no name, sending fails.
  Upload& Field(const Wide& name, const Wide& value) {
    const std::size_t before = std::strlen(upload_.GetParaString());
    Set([&] { upload_.AddParameter(name, value); });
    if (std::strlen(upload_.GetParaString()) == before && error_.reason.empty())
      error_ = Error(server_, "the field '" + ToUtf8(name) + "' does not fit into the form");
    return *this;
  }
  /// Uses HTTPS.
  Upload& Secure() {
    upload_.SetSecure(true);
    return *this;
  }
  /// HTTP authentication: used when the server answers 401.
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

  // Each of these sends the form and waits for the reply; only one call per object. The `source` of
  // an error is the server or the file; its `systemError` is a Windows error code on every system.

  /// Sends a file as the form field `field`.
  Result<Reply> SendFile(const Wide& path, const Wide& field = "WholeFile") {
    Set([&] {
      upload_.SetLocalFile(path);
      upload_.SetFieldName(field);
    });
    return Send(ToUtf8(path), [&] { upload_.Post(); });
  }
  /// Sends a text, with `name` as its file name, as the form field "PartialUpload".
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
    error_ = Error(server_, "this upload has already been sent");
    if (progress_) upload_.SetProgress(&Upload::CallProgress, this);
    post();
    if (const std::int32_t code = upload_.GetErrorCode()) return ErrorOf(code, file);
    SystemString text;
    Set([&] { text.reset(upload_.DetachResponse()); });
    return Reply{upload_.GetStatus(), ToUtf8(WideView(text.get(), SysStringLen(text.get()))),
                 upload_.WasRedirected(), upload_.IsResponseCut()};
  }

  Error ErrorOf(std::int32_t code, const std::string& file) const {
    constexpr unsigned kFirstOfHttp = 12000;
    const unsigned number = static_cast<unsigned>(code) & 0xFFFF;
    const char* const reason = ReasonOfUploadError(code);
    Error error(code < 0 && number < kFirstOfHttp ? file : server_,
                reason ? reason : "the upload failed with error " + std::to_string(number));
    error.systemError = number;
    return error;
  }

  static bool CallProgress(void* self, std::uint32_t sent, std::uint32_t total) noexcept {
    return static_cast<Upload*>(self)->progress_(sent, total);
  }

  std::string server_;
  CNetUploadFile upload_;
  Progress progress_;
  Error error_;  // the reason why this object cannot send (any more)
};

}  // namespace vosmere
