// CNetUploadFile, which sends a file to a web server as a form.
#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"
#include "vosmere/net/http_session.h"

namespace vosmere {

struct UploadBody;

/// Sends one file, or one XML text, to a web server as a multipart/form-data POST. The parameters
/// added become further fields of the form. The reply is appended to the response of the base
/// class.
///
/// A file is sent from a memory mapping and never held in memory as a whole. If it is cut short
/// meanwhile, the upload fails with error 1006 before the end of the body is sent, so that the
/// server does not take it for complete. The body is limited to less than 4 GiB.
///
/// On every system, error codes are those of Windows in the form of an HRESULT, which is negative:
/// error n becomes 0x80070000 | (n & 0xFFFF). Examples: 2 no such file, 12002 timed out, 12007 name
/// not resolved, 12014 the server keeps asking for a password, 12029 cannot connect, 12030
/// connection aborted, 12045 untrusted certificate, 12152 invalid reply, 12156 too many redirects.
class VOSMERE_API CNetUploadFile : public CNetBase {
 public:
  /// Sets the boundary to a new UUID. If the system has none to give, the boundary stays null, and
  /// uploads fail until SetBoundary sets one.
  CNetUploadFile();
  ~CNetUploadFile() override;

  // What to send and where. Setters copy their text, and null clears the field.

  /// The path of the file to send.
  /// Intended: the whole path is also sent as the file's name, because servers identify files by
  /// it. With SetClean only the last component is sent.
  void SetLocalFile(const WChar* path) { localFile_.AssignOrNull(path); }
  /// The name of the form field that holds the file.
  void SetFieldName(const WChar* name) { fieldName_.AssignOrNull(name); }
  /// The multipart boundary, which must not be empty. Set it before adding parameters, whose text
  /// contains it.
  void SetBoundary(const WChar* boundary) { boundary_.AssignOrNull(boundary); }
  /// The proxy as `name:port`. Null uses the system's configuration: on Windows the preconfigured
  /// access, elsewhere the environment variables http_proxy, https_proxy and no_proxy.
  void SetProxy(const WChar* proxy) { proxy_.AssignOrNull(proxy); }
  /// HTTP authentication: used when the server answers 401, if both are set.
  void SetUserName(const WChar* name) { userName_.AssignOrNull(name); }
  void SetPassword(const WChar* password) { password_.AssignOrNull(password); }
  /// Uses HTTPS, on port 443 unless the host names another port.
  void SetSecure(bool secure) { secure_ = secure; }

  /// Off by default. When on, the form is written as browsers do it (RFC 7578): the file's name
  /// without its folders, names in UTF-8 with `"`, CR and LF percent-encoded (%22, %0D, %0A), and a
  /// semicolon before the boundary. Set it before adding parameters.
  void SetClean(bool clean) { clean_ = clean; }
  /// Reports the progress of an upload in bytes. Called on the thread that calls Post, after each
  /// piece of the body and finally with `sent` equal to `total`. It starts again from the beginning
  /// when the server wants the request repeated. Returning false cancels the upload (error 12017).
  /// `context` is passed through. Null turns it off.
  void SetProgress(bool (*progress)(void* context, ULONG sent, ULONG total), void* context);

  /// Appends a field to the form, formatted by FormNameValue. A null value gives an empty field; a
  /// null name is ignored.
  /// Intended: a field that would make the text of all fields longer than 1024 bytes is dropped
  /// silently.
  void AddParameter(const WChar* name, const WChar* value) override;

  // Uploads.

  /// Sends the file at `path` as the field "WholeFile". True when Post returns 0 or more.
  bool UploadFile(const WChar* path);
  /// Sends the text `xml` in UTF-8 as the field "PartialUpload"; `path` is only sent as the file's
  /// name. `xml` is not copied and has to stay valid until it is replaced. True when Post returns 0
  /// or more.
  bool UploadPartialFile(const WChar* path, const WChar* xml);
  /// Sends the request, reads the reply and returns the error code (GetErrorCode): 0 for success.
  /// Intended: the result is 1, which the callers above count as success, when the body was sent
  /// but the reply could not be read. Callers that need certainty compare with 0.
  LONG Post();

  /// Passes exactly the bytes that Post would send to `take`, piece by piece, and sends nothing.
  /// False when `take` returns false, the file cannot be read or memory runs out.
  bool ShowRequest(bool (*take)(void* context, const void* bytes, std::size_t size), void* context);

  /// The error code of the last Post: 0, 1 or negative (see Post and the class).
  LONG GetErrorCode() const { return errorCode_; }
  /// The step that failed last, null when none has; a later success does not clear it. The object
  /// owns the text.
  WChar* GetErrorMsg() const { return errorMsg_.get(); }
  /// Stores a copy of the text; null clears it.
  void SetErrorMsg(const WChar* message) { errorMsg_.AssignOrNull(message); }
  /// The HTTP status code of the last reply (200, 404 ...); 0 when there is none. Post does not
  /// evaluate it.
  int GetStatus() const { return status_; }

  // The steps of an upload. `request` is an open request (GetRequest); null fails with error 6.

  /// Sends the body with the local file. False on failure, with the error code and message set.
  bool UploadWholeFile(void* request);
  /// Sends the body with the text given to UploadPartialFile. False on failure, as above.
  bool UploadXMLContent(void* request);
  /// The length of the reply by its Content-Length header, at most 2^31 - 1; -1 when it is not
  /// known.
  int CheckContentLength(void* request);
  /// Sends the request without a body, so that authentication takes place before the upload. The
  /// reply is read and traced. False on failure, and when the server still answers 401 or 407.
  bool Authenticate(void* request);

  // The parts of the body, as new system strings that the caller frees with SysFreeString. Null
  // when memory runs out.

  /// The text before the file's bytes.
  BSTR get_head();
  /// The text after the last field.
  BSTR get_tail();
  /// One form field. Null arguments are empty.
  BSTR FormNameValue(const WChar* name, const WChar* value);

  /// Opens the local file and maps it into memory. Returns the view, which is not null even for an
  /// empty file, and stores its handles and its size in bytes. The caller frees all three with
  /// release_data. Null on failure, with the error code and message set.
  const void* get_data(void*& file, void*& mapping, ULONG& size);
  /// Frees the result of get_data. Null handles are ignored.
  static void release_data(void* file, void* mapping);

 private:
  struct Handles;

  bool Upload(void* request, bool partial);
  bool SetPart(const WChar* field, const WChar* path);
  bool OpenRequest(Handles& handles);
  bool FillBody(UploadBody& body, bool partial);
  bool AddContentType(void* request);
  /// Sets the error message and code; always false.
  bool Fail(const char* message, ULONG error);

  SystemText localFile_;
  SystemText fieldName_;
  SystemText proxy_;
  SystemText userName_;
  SystemText password_;
  bool secure_ = false;
  SystemText boundary_;
  LONG errorCode_ = 0;
  bool partial_ = false;
  const WChar* xml_ = nullptr;
  SystemText errorMsg_;
  bool clean_ = false;
  bool (*progress_)(void* context, ULONG sent, ULONG total) = nullptr;
  void* progressContext_ = nullptr;
  int status_ = 0;
};

}  // namespace vosmere
