#pragma once

#include <cstddef>
#include <vector>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Base of the HTTP clients: the server and the object path of a POST, the user's name and password
/// digest, form parameters, and the server's reply as wide text.
///
/// Calls block until the server answers or a time limit is reached (SetTimeouts). One object serves
/// one request at a time. Setters copy; null clears.
///
/// When memory runs out, a setter keeps the old text (LostTexts tells), and a form that has lost a
/// parameter is not sent.
class VOSMERE_API CNetBase {
 public:
  /// Milliseconds.
  static constexpr LONG kConnectTimeout = 30000;
  static constexpr LONG kTransferTimeout = 60000;
  /// Bytes of all parameters together.
  static constexpr std::size_t kMostParameterBytes = 1024;

  CNetBase();
  CNetBase(const CNetBase&) = delete;
  CNetBase& operator=(const CNetBase&) = delete;

  /// Appends a form parameter, "name=value" in UTF-8 behind an "&". Null in either changes nothing.
  /// Intended: a parameter is dropped without a word when the text would pass 1024 bytes, counting
  /// the "=" and always an "&", too. Intended: nothing is escaped; callers pass what is ready for
  /// the form.
  virtual void AddParameter(const WChar* name, const WChar* value);

  /// Closes the handles.
  virtual ~CNetBase();

  /// The server's name, which may carry a port (`name:8080`). An international name is given in its
  /// ASCII form (`xn--...`).
  void SetHost(const WChar* host) { host_.AssignOrNull(host); }
  /// The object path of the request on the server.
  void SetPostAcceptor(const WChar* path) { postAcceptor_.AssignOrNull(path); }

  /// A text of 81 characters or more changes nothing. The digest is the MD5 text of the password.
  void SetVSMUserName(const WChar* name) { userName_.AssignIfShorter(name, kLongName); }
  void SetPswMD5(const WChar* digest) { pswMD5_.AssignIfShorter(digest, kLongName); }
  /// Both at once, and as the parameters "username" and "pswmd5". Nothing when either is too long.
  void SetUserNamePswMD5(const WChar* name, const WChar* digest);

  /// "username=...&pswmd5=..." in UTF-8; the object's, until the next call. Null when either is not
  /// set, and when both do not fit 199 bytes.
  char* GetFormUserNamePswString();
  /// The parameters added so far, zero-terminated.
  char* GetParaString() { return parameters_; }

  void AddResponse(const WChar* text);
  /// Appends bytes of UTF-8.
  /// Intended: each call converts by itself. A character whose bytes come in two pieces is not
  /// joined, and each part becomes U+FFFD.
  void AddResponseUnicodingIt(const char* bytes, int length);
  /// The reply read so far, which the object forgets; freed with SysFreeString. Null when there is
  /// none, and without memory (the object then keeps it).
  BSTR DetachResponse();

  /// How long to wait, in milliseconds, from the next request on: for the connection; and, once it
  /// stands, while no byte of the request moves, for the head of the reply, and for each piece of
  /// it. (On Windows the last bytes, which the system still holds when it has taken all, count to
  /// the head of the reply.)
  void SetTimeouts(LONG connect, LONG transfer);

  /// Opens a POST to the server, with the agent "Vosmere Browser"; whatever was open is closed. 0,
  /// or -3, -4, -5 when session, connection or request cannot be opened. The server learns of it
  /// only when something is sent.
  int OpenSessionConnection();
  /// The request opened by OpenSessionConnection; null when none is.
  void* GetRequest() const { return request_; }
  /// Sends the parameters on that request as a URL-encoded form; may be called again. 0, -5 without
  /// a request, -6 when that fails.
  int SendForm();
  /// Closes what is open.
  void CloseSessionConnection();

  /// Adds the reply to a sent request to the response and returns its length in bytes. -5 for a
  /// null request, -7 when reading fails or memory runs out. At most 50,000 pieces of 2048 bytes
  /// are read.
  int ReadServerResponse(void* request);
  /// Whether the last reply read was longer than that; the next call goes on with its rest.
  bool IsResponseCut() const { return responseCut_; }
  /// From now on ReadServerResponse gives a reply, however long, to `take` as its bytes come, and
  /// adds nothing to the response; false ends the reading (-7). The length that it returns stops at
  /// 2^31 - 1. Null for keeping replies again.
  void SetResponseSink(bool (*take)(void* context, const void* bytes, std::size_t size),
                       void* context);

  /// Whether the server has led the last POST elsewhere by a 301, 302 or 303: that makes it a GET,
  /// the reply is to that GET, and nobody there got the body.
  bool WasRedirected() const { return redirected_; }

 protected:
  const WChar* host() const { return host_.get(); }
  const WChar* postAcceptor() const { return postAcceptor_.get(); }
  LONG connectTimeout() const { return connectTimeout_; }
  LONG transferTimeout() const { return transferTimeout_; }
  /// Appends bytes to the parameters as they are. False, with nothing appended, when they do not
  /// fit.
  bool AppendParameterText(const char* text, std::size_t length);
  /// Bars the form from being sent without a parameter that there was no memory for.
  void LoseParameter();
  bool hasLostParameter() const { return parameterLost_; }
  void SetRedirected(bool redirected) { redirected_ = redirected; }

 private:
  static constexpr std::size_t kLongName = 81;

  void AppendResponse(WideView text);
  bool TakeResponse(const char* bytes, std::size_t size);

  SystemText host_;
  SystemText postAcceptor_;
  SystemText userName_;
  SystemText pswMD5_;
  char form_[200] = {};
  char parameters_[kMostParameterBytes + 1] = {};
  bool parameterLost_ = false;
  std::vector<std::vector<WChar>> response_;  // in blocks: growing never copies more than one
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
