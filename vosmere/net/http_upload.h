#pragma once

#include <cstddef>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"
#include "vosmere/net/http_session.h"

namespace vosmere {

struct UploadBody;

/// Sends one file, or one XML text, to a web server as a multipart/form-data POST, with the added
/// parameters as further fields of the form; the reply is in the response of the base class.
///
/// A file is sent from a mapping and never held in memory as a whole. One that is cut short
/// meanwhile ends the upload in error 1006, before the server has the end of the body. The body has
/// less than 4 GiB.
///
/// Errors are those of Windows on every system, as negative numbers: n becomes 0x80070000 |
/// (n & 0xFFFF). For example 2 no such file, 12002 timed out, 12007 name not resolved, 12014 a
/// password asked for again and again, 12029 cannot connect, 12030 connection aborted, 12045
/// untrusted certificate, 12152 invalid reply, 12156 redirected again and again.
class VOSMERE_API CNetUploadFile : public CNetBase {
 public:
  /// Makes the boundary, a new UUID.
  CNetUploadFile();
  ~CNetUploadFile() override;

  // What to send and where. Setters copy, and null clears.

  /// The file to send. Intended: the whole path is also what the server is told as the file's name;
  /// servers know files by it. SetClean sends the last part alone.
  void SetLocalFile(const WChar* path) { localFile_.AssignOrNull(path); }
  /// The form field of the file.
  void SetFieldName(const WChar* name) { fieldName_.AssignOrNull(name); }
  /// Not empty, and set before parameters are added, which have it in them.
  void SetBoundary(const WChar* boundary) { boundary_.AssignOrNull(boundary); }
  /// `name:port`; null is the system's preconfigured access.
  void SetProxy(const WChar* proxy) { proxy_.AssignOrNull(proxy); }
  /// For a server that asks who is there. Used when both are set.
  void SetUserName(const WChar* name) { userName_.AssignOrNull(name); }
  void SetPassword(const WChar* password) { password_.AssignOrNull(password); }
  /// HTTPS, on port 443 unless the host names another.
  void SetSecure(bool secure) { secure_ = secure; }

  /// Off at first. When on, the form is written as browsers do it (RFC 7578): the file's name
  /// without its folders, names in UTF-8 with `"`, CR and LF as %22, %0D and %0A, and a semicolon
  /// before the boundary. To be set before parameters are added.
  void SetClean(bool clean) { clean_ = clean; }
  /// Called on the calling thread as the body goes out, at its end last, and from its beginning
  /// again when the server wants it repeated; false cancels the upload (error 12017). Null for
  /// none.
  void SetProgress(bool (*progress)(void* context, ULONG sent, ULONG total), void* context);

  /// Appends a field to the form, formatted by FormNameValue; a null value gives an empty field, a
  /// null name none.
  /// Intended: a field is dropped without a word when all fields together would pass 1024 bytes.
  void AddParameter(const WChar* name, const WChar* value) override;

  // Uploads.

  /// The file as the field "WholeFile". True when the code of Post is 0 or more.
  bool UploadFile(const WChar* path);
  /// The text `xml` in UTF-8 as the field "PartialUpload"; `path` is its name only. `xml` stays the
  /// caller's until it is replaced. True when the code of Post is 0 or more.
  bool UploadPartialFile(const WChar* path, const WChar* xml);
  /// Performs the request and returns the error code.
  /// Intended: 1, which counts as success, when the body was sent and the reply could not be read;
  /// callers that need certainty compare with 0.
  LONG Post();

  /// Hands the very bytes that Post would send to `take`, piece by piece, and sends nothing. False
  /// when `take` returns false or the file cannot be read.
  bool ShowRequest(bool (*take)(void* context, const void* bytes, std::size_t size), void* context);

  /// Of the last Post.
  LONG GetErrorCode() const { return errorCode_; }
  /// The step that failed last; null while none has.
  WChar* GetErrorMsg() const { return errorMsg_.get(); }
  void SetErrorMsg(const WChar* message) { errorMsg_.AssignOrNull(message); }
  /// The status code of the last reply (404 ...); 0 while there is none. Post does not look at it.
  int GetStatus() const { return status_; }

  // The steps of an upload. `request` is an opened one (GetRequest); null is a failure (error 6).

  bool UploadWholeFile(void* request);
  bool UploadXMLContent(void* request);
  /// The length of the reply, at most 2^31 - 1; -1 when it is not told.
  int CheckContentLength(void* request);
  /// Sends the request without a body, to agree with the server on who is there; the reply is read
  /// and traced. False, too, when the server denies access.
  bool Authenticate(void* request);

  // The parts of the body, as new system strings that the caller frees; null without memory.

  BSTR get_head();
  BSTR get_tail();
  BSTR FormNameValue(const WChar* name, const WChar* value);

  /// Opens and maps the local file. The view, which is not null for an empty file either; freed
  /// with its handles by release_data. Null on failure.
  const void* get_data(void*& file, void*& mapping, ULONG& size);
  static void release_data(void* file, void* mapping);

 private:
  struct Handles;

  bool Upload(void* request, bool partial);
  bool SetPart(const WChar* field, const WChar* path);
  bool OpenRequest(Handles& handles);
  bool FillBody(UploadBody& body, bool partial);
  bool AddContentType(void* request);
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
