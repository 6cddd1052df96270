// CNetBase: form parameters, the request, and the reply.
#include "vosmere/net/http_session.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/base/internal/wide_literal.h"
#include "vosmere/net/internal/exchange.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere {
namespace {

constexpr const char* kAgent = "Vosmere Browser";
constexpr const char* kFormType = "Content-Type: application/x-www-form-urlencoded";

constexpr WideLiteral kUserName(u"username");
constexpr WideLiteral kPswMD5(u"pswmd5");

constexpr std::size_t kBlock = std::size_t{512} * 1024;  // code units of the response

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
    // Built first, so that nothing is appended when memory runs out.
    const std::string pair = Utf8(name) + '=' + Utf8(value);
    const std::size_t used = std::strlen(parameters_);
    if (used + pair.size() + 1 > kMostParameterBytes) return;
    if (used > 0) AppendParameterText("&", 1);
    AppendParameterText(pair.data(), pair.size());
  } catch (const std::bad_alloc&) {
    LoseParameter();
  }
}

void CNetBase::LoseParameter() {
  detail::CountLostText();
  parameterLost_ = true;
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
    while (!text.empty()) {
      // The first block grows with a short reply; further blocks are allocated whole.
      if (response_.empty()) response_.push_back({});
      if (response_.back().size() == kBlock) response_.push_back({}).reserve(kBlock);
      Array<WChar>& block = response_.back();
      const WideView part = text.First(kBlock - block.size());
      block.Append(part.data, part.size);
      text = text.From(part.size);
    }
  } catch (const std::bad_alloc&) {
    detail::CountLostText();
  }
}

// Copies and frees the last block first. The system gets memory back soonest in that order, so the
// reply is not in memory twice.
BSTR CNetBase::DetachResponse() {
  std::size_t size = 0;
  for (const auto& block : response_) size += block.size();
  BSTR const text = size ? SysAllocStringLen(nullptr, size) : nullptr;
  if (size && !text) detail::CountLostText();
  for (; text && !response_.empty(); response_.pop_back()) {
    const auto& block = response_.back();
    size -= block.size();
    std::copy(block.begin(), block.end(), text + size);
  }
  return text;
}

void CNetBase::SetResponseSink(bool (*take)(void* context, const void* bytes, std::size_t size),
                               void* context) {
  sink_ = take;
  sinkContext_ = context;
}

bool CNetBase::TakeResponse(const char* bytes, std::size_t size) {
  if (sink_) return sink_(sinkContext_, bytes, size);
  const unsigned long lostBefore = LostTexts();
  AddResponseUnicodingIt(bytes, static_cast<int>(size));
  return LostTexts() == lostBefore;
}

int CNetBase::ReadServerResponse(void* handle) {
  auto* const request = static_cast<http::Request*>(handle);
  responseCut_ = false;
  if (!request) return -5;
  std::uint64_t total = 0;
  const auto result = [&] { return static_cast<int>(std::min<std::uint64_t>(total, INT_MAX)); };
  // Only replies that are kept in memory are limited; a sink may take any number of pieces.
  for (std::uint64_t piece = 0; sink_ || piece < mostPieces_; ++piece) {
    char bytes[kReplyPiece];
    ULONG got = 0;
    if (http::Read(request, bytes, kReplyPiece, &got)) return -7;
    if (got == 0) return result();
    if (!TakeResponse(bytes, got)) return -7;
    total += got;
  }
  bool ended = false;
  responseCut_ = http::HasEnded(request, &ended) || !ended;
  return result();
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
  // Only when all three are open, so that a failure leaves none open.
  session_ = session.release();
  connection_ = connection.release();
  request_ = request.release();
  return 0;
}

int CNetBase::SendForm() {
  auto* const request = static_cast<http::Request*>(request_);
  if (!request) return -5;
  // An incomplete form is worse than none, so nothing is sent when a parameter was lost.
  const bool sent = !parameterLost_ && http::AddHeader(request, kFormType) == http::kNone &&
                    SendWhole(request, parameters_, std::strlen(parameters_)) == http::kNone;
  redirected_ = sent && http::Redirected(request);
  return sent ? 0 : -6;
}

void CNetBase::CloseSessionConnection() {
  CloseAs<http::Session>(session_);
  CloseAs<http::Connection>(connection_);
  CloseAs<http::Request>(request_);
}

}  // namespace vosmere
