#include "vosmere/net/http_session.h"

#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include "vosmere/base/internal/wide_literal.h"
#include "vosmere/base/no_memory.h"
#include "vosmere/net/internal/exchange.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere {
namespace {

constexpr const char* kAgent = "Vosmere Browser";
constexpr const char* kFormType = "Content-Type: application/x-www-form-urlencoded";

constexpr WideLiteral kUserName(u"username");
constexpr WideLiteral kPswMD5(u"pswmd5");

constexpr int kPiece = 2048;
constexpr int kMostPieces = 50000;

std::string Utf8(const WChar* text) {
  return BytesOf(kCodePageUtf8, WideView(text));
}

template <class Handle>
void CloseAs(void*& handle) {
  if (handle) http::Close(static_cast<Handle*>(std::exchange(handle, nullptr)));
}

}  // namespace

CNetBase::CNetBase() = default;

CNetBase::~CNetBase() {
  CloseSessionConnection();
}

void CNetBase::SetUserNamePswMD5(const WChar* name, const WChar* digest) {
  if (WideLength(name) >= kLongName || WideLength(digest) >= kLongName) return;
  SetVSMUserName(name);
  SetPswMD5(digest);
  AddParameter(kUserName, name);
  AddParameter(kPswMD5, digest);
}

char* CNetBase::GetFormUserNamePswString() {
  if (!userName_.get() || !pswMD5_.get()) return nullptr;
  return NullIfNoMemory([&]() -> char* {
    const int length = std::snprintf(form_, sizeof form_, "username=%s&pswmd5=%s",
                                     Utf8(userName_.get()).c_str(), Utf8(pswMD5_.get()).c_str());
    return length < static_cast<int>(sizeof form_) ? form_ : nullptr;
  });
}

void CNetBase::AddParameter(const WChar* name, const WChar* value) {
  if (!name || !value) return;
  try {
    const std::string pair = Utf8(name) + '=' + Utf8(value);
    const std::size_t used = std::strlen(parameters_);
    if (used + pair.size() + 1 > kMostParameterBytes) return;
    if (used > 0) AppendParameterText("&", 1);
    AppendParameterText(pair.data(), pair.size());
  } catch (const std::bad_alloc&) {
    // dropped, as one that is too long
  }
}

bool CNetBase::AppendParameterText(const char* text, std::size_t length) {
  const std::size_t used = std::strlen(parameters_);
  if (used + length > kMostParameterBytes) return false;
  std::memcpy(parameters_ + used, text, length);
  parameters_[used + length] = 0;
  return true;
}

// The reply.

void CNetBase::AddResponse(const WChar* text) {
  AppendResponse(WideView(text));
}

void CNetBase::AddResponseUnicodingIt(const char* bytes, int length) {
  BSTR text = nullptr;
  if (!bytes || length <= 0) return;
  if (!CUnicodeTool::UTF8GetBSTR(&text, bytes, length)) return detail::CountLostText();
  AppendResponse({text, SysStringLen(text)});
  SysFreeString(text);
}

void CNetBase::AppendResponse(WideView text) {
  try {
    response_.insert(response_.end(), text.begin(), text.end());
  } catch (const std::bad_alloc&) {
    detail::CountLostText();
  }
}

BSTR CNetBase::DetachResponse() {
  if (response_.empty()) return nullptr;
  BSTR const text = SysAllocStringLen(response_.data(), response_.size());
  if (text) std::vector<WChar>().swap(response_);
  return text;
}

int CNetBase::ReadServerResponse(void* request) {
  if (!request) return -5;
  const unsigned long lostBefore = LostTexts();
  int total = 0;
  for (int piece = 0; piece < kMostPieces; ++piece) {
    char bytes[kPiece];
    ULONG got = 0;
    if (http::Read(static_cast<http::Request*>(request), bytes, kPiece, &got)) return -7;
    if (got == 0) break;
    AddResponseUnicodingIt(bytes, static_cast<int>(got));
    if (LostTexts() != lostBefore) return -7;
    total += static_cast<int>(got);
  }
  return total;
}

// The request.

void CNetBase::SetTimeouts(LONG connect, LONG transfer) {
  connectTimeout_ = connect;
  transferTimeout_ = transfer;
}

int CNetBase::OpenSessionConnection() {
  CloseSessionConnection();
  http::Owned<http::Session> session;
  http::Owned<http::Connection> connection;
  http::Owned<http::Request> request;
  if (http::Open(kAgent, nullptr, {connectTimeout_, transferTimeout_}, &session)) return -3;
  if (http::Connect(session.get(), host_.get(), false, &connection)) return -4;
  if (http::OpenPost(connection.get(), postAcceptor_.get(), false, &request)) return -5;
  session_ = session.release();
  connection_ = connection.release();
  request_ = request.release();
  return 0;
}

int CNetBase::SendForm() {
  auto* const request = static_cast<http::Request*>(request_);
  if (!request) return -5;
  const bool sent = http::AddHeader(request, kFormType) == http::kNone &&
                    SendWhole(request, parameters_, std::strlen(parameters_)) == http::kNone;
  return sent ? 0 : -6;
}

void CNetBase::CloseSessionConnection() {
  CloseAs<http::Session>(session_);
  CloseAs<http::Connection>(connection_);
  CloseAs<http::Request>(request_);
}

}  // namespace vosmere
