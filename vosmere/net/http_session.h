// CNetBase, the base class of the HTTP clients.
#pragma once

#include <cstddef>

#include "vosmere/base/array.h"
#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Base of the HTTP clients. It holds the server and the object path of a POST request, the user's
/// name and password digest, the form parameters, and the server's reply as UTF-16 text.
///
/// Calls block until the server answers or a time limit is reached (SetTimeouts). One object
/// handles one request at a time and is not thread-safe. Setters copy their text; null clears the
/// field.
///
/// When memory runs out, a setter keeps the old text (LostTexts counts it), and a form that has
/// lost a parameter is not sent.
class VOSMERE_API CNetBase {
 public:
  /// The default time limits (SetTimeouts), in milliseconds.
  static constexpr LONG kConnectTimeout = 30000;
  static constexpr LONG kTransferTimeout = 60000;
  /// The longest text of all parameters together, in bytes.
  static constexpr std::size_t kMostParameterBytes = 1024;
  /// A reply is read in pieces of so many bytes, and is cut after so many pieces by default.
  static constexpr ULONG kReplyPiece = 2048;
  static constexpr ULONG kMostReplyPieces = 50000;

  CNetBase();
  CNetBase(const CNetBase&) = delete;
  CNetBase& operator=(const CNetBase&) = delete;

  /// Appends a form parameter as "name=value" in UTF-8, after an "&" if it is not the first. Does
  /// nothing when either argument is null.
  /// Intended: a parameter that would make the text longer than 1024 bytes is dropped silently. The
  /// "=" and an "&" always count, even for the first parameter.
  /// Intended: nothing is escaped. Callers pass names and values that are ready for the form.
  virtual void AddParameter(const WChar* name, const WChar* value);

  /// Closes the session, connection and request.
  virtual ~CNetBase();

  /// The server's name, optionally with a port (`name:8080`). An international name has to be in
  /// its ASCII form (`xn--...`, RFC 5891).
  void SetHost(const WChar* host) { host_.AssignOrNull(host); }
  /// The object path of the request on the server. A missing leading slash is added, and characters
  /// that a request line cannot hold are percent-encoded.
  void SetPostAcceptor(const WChar* path) { postAcceptor_.AssignOrNull(path); }

  /// The user's name, and the MD5 text of the password. A text of 81 code units or more is ignored,
  /// and the old one stays.
  void SetVSMUserName(const WChar* name) { userName_.AssignIfShorter(name, kLongName); }
  void SetPswMD5(const WChar* digest) { pswMD5_.AssignIfShorter(digest, kLongName); }
  /// Sets both, and adds them as the parameters "username" and "pswmd5". Does nothing when either
  /// is too long.
  void SetUserNamePswMD5(const WChar* name, const WChar* digest);

  /// "username=...&pswmd5=..." in UTF-8. The object owns the text, which is valid until the next
  /// call. Null when either is not set, when both together do not fit in 199 bytes, and when memory
  /// runs out.
  char* GetFormUserNamePswString();
  /// The parameters added so far, null-terminated. The object owns the text.
  char* GetParaString() { return parameters_; }

  /// Appends text to the response. When memory runs out, the rest of it is dropped and LostTexts
  /// counts it.
  void AddResponse(const WChar* text);
  /// Appends UTF-8 bytes to the response.
  /// Intended: each call converts its bytes on its own. A character that is split between two calls
  /// is not joined; each part becomes U+FFFD.
  void AddResponseUnicodingIt(const char* bytes, int length);
  /// Returns the response and clears it. The caller frees the text with SysFreeString. Null when
  /// there is no response, and when memory runs out; in that case the object keeps it.
  BSTR DetachResponse();

  /// Sets the time limits in milliseconds, from the next request on. `connect` limits finding the
  /// host, connecting to it and the TLS handshake. `transfer` limits how long no byte of the
  /// request may move, the wait for the head of the reply, and each read of the reply. On Windows
  /// the last bytes count towards the head of the reply, because the system still holds them when
  /// it has accepted the whole body.
  void SetTimeouts(LONG connect, LONG transfer);

  /// Opens a POST request to the server with the agent "Vosmere Browser", after closing what was
  /// open. Returns 0, or -3, -4 or -5 when the session, connection or request cannot be opened.
  /// Nothing is sent yet.
  int OpenSessionConnection();
  /// The request opened by OpenSessionConnection, which the object owns; null when none is open.
  void* GetRequest() const { return request_; }
  /// Sends the parameters on that request as a URL-encoded form. May be called again. Returns 0, -5
  /// when no request is open, and -6 when sending fails or a parameter was lost.
  int SendForm();
  /// Closes the session, connection and request if they are open.
  void CloseSessionConnection();

  /// Reads the reply to a request that was sent and appends it to the response. Returns its length
  /// in bytes, -5 for a null request, and -7 when reading fails or memory runs out. Reads at most
  /// 50,000 pieces of 2048 bytes, or as many as SetMostPieces says.
  int ReadServerResponse(void* request);
  void SetMostPieces(ULONG pieces) { mostPieces_ = pieces; }
  ULONG GetMostPieces() const { return mostPieces_; }
  /// Whether the last reply was longer than that limit, or it could not be determined. The next
  /// call of ReadServerResponse continues with the rest.
  bool IsResponseCut() const { return responseCut_; }
  /// From now on ReadServerResponse passes a reply of any length to `take` in pieces, as bytes, and
  /// appends nothing to the response. When `take` returns false, reading stops with -7. The
  /// returned length is at most 2^31 - 1. `context` is passed through. A null `take` restores the
  /// response.
  void SetResponseSink(bool (*take)(void* context, const void* bytes, std::size_t size),
                       void* context);

  /// Whether the server redirected the last POST with status 301, 302 or 303. That turns it into a
  /// GET without the body: the reply is the one to the GET, and the new address did not receive the
  /// form.
  bool WasRedirected() const { return redirected_; }

 protected:
  const WChar* host() const { return host_.get(); }
  const WChar* postAcceptor() const { return postAcceptor_.get(); }
  LONG connectTimeout() const { return connectTimeout_; }
  LONG transferTimeout() const { return transferTimeout_; }
  /// Appends bytes to the parameters unchanged. False, with nothing appended, when they do not fit.
  bool AppendParameterText(const char* text, std::size_t length);
  /// Records that a parameter was lost because memory ran out. The form is not sent any more, since
  /// it would be incomplete.
  void LoseParameter();
  bool hasLostParameter() const { return parameterLost_; }
  /// For subclasses that send the request themselves (WasRedirected).
  void SetRedirected(bool redirected) { redirected_ = redirected; }

 private:
  static constexpr std::size_t kLongName = 81;

  /// Appends text to the response; LostTexts counts what memory runs out for.
  void AppendResponse(WideView text);
  /// Passes a piece of the reply to the sink or the response; false when the reading should stop.
  bool TakeResponse(const char* bytes, std::size_t size);

  SystemText host_;
  SystemText postAcceptor_;
  SystemText userName_;
  SystemText pswMD5_;
  char form_[200] = {};
  char parameters_[kMostParameterBytes + 1] = {};
  bool parameterLost_ = false;
  Array<Array<WChar>> response_;  // in blocks, so that growing copies at most one
  ULONG mostPieces_ = kMostReplyPieces;
  bool responseCut_ = false;
  bool redirected_ = false;
  bool (*sink_)(void* context, const void* bytes, std::size_t size) = nullptr;
  void* sinkContext_ = nullptr;
  void* session_ = nullptr;
  void* connection_ = nullptr;
  void* request_ = nullptr;
  LONG connectTimeout_ = kConnectTimeout;
  LONG transferTimeout_ = kTransferTimeout;
};

}  // namespace vosmere
