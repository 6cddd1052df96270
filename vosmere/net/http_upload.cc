// CNetUploadFile: the request, its body, and the errors.
#include "vosmere/net/http_upload.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/base/internal/wide_literal.h"
#include "vosmere/net/internal/exchange.h"
#include "vosmere/net/internal/join.h"
#include "vosmere/net/internal/multipart.h"
#include "vosmere/net/internal/upload_body.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/trace.h"
#include "vosmere/text/toolbox.h"

namespace vosmere {
namespace {

constexpr const char* kAgent = "Vosmere Post";
constexpr WideLiteral kWholeFile(u"WholeFile");
constexpr WideLiteral kPartialUpload(u"PartialUpload");
constexpr const char* kNoMemory = "Out Of Memory";
constexpr int kMostTraced = 64;  // pieces of a reply; a hostile server may send without end

using multipart::Form;

http::Request* AsRequest(void* request) {
  return static_cast<http::Request*>(request);
}

Form FormOf(bool clean) {
  return clean ? Form::kClean : Form::kOld;
}

// A Windows error number as an HRESULT.
LONG ErrorCode(ULONG error) {
  const auto code = static_cast<LONG>(error);
  return code > 0 ? static_cast<LONG>(0x80070000u | (error & 0xFFFF)) : code;
}

/// Throws std::bad_alloc, also for null.
std::string Bytes(unsigned codePage, const JoinedText& text) {
  if (!text) throw std::bad_alloc();
  return BytesOf(codePage, {text.get(), SysStringLen(text.get())});
}

}  // namespace

struct CNetUploadFile::Handles {
  http::Owned<http::Session> session;
  http::Owned<http::Connection> connection;
  http::Owned<http::Request> request;
};

CNetUploadFile::CNetUploadFile() {
  const unsigned long lostBefore = LostTexts();
  WChar uuid[37];
  if (CBaseTool::GetUUID(uuid, 37)) SetBoundary(uuid);
  if (LostTexts() != lostBefore) LoseParameter();  // so that sending fails for lack of memory
}

CNetUploadFile::~CNetUploadFile() = default;

void CNetUploadFile::SetProgress(bool (*progress)(void* context, ULONG sent, ULONG total),
                                 void* context) {
  progress_ = progress;
  progressContext_ = context;
}

// The body.

BSTR CNetUploadFile::get_head() {
  return NullIfNoMemory([&] {
    return multipart::FileHead(FormOf(clean_), boundary_.get(), fieldName_.get(), localFile_.get())
        .release();
  });
}

BSTR CNetUploadFile::get_tail() {
  return multipart::Tail(boundary_.get()).release();
}

BSTR CNetUploadFile::FormNameValue(const WChar* name, const WChar* value) {
  return NullIfNoMemory(
      [&] { return multipart::Field(FormOf(clean_), boundary_.get(), name, value).release(); });
}

void CNetUploadFile::AddParameter(const WChar* name, const WChar* value) {
  if (!name) return;
  try {
    const std::string field = Bytes(kCodePageUtf8, JoinedText(FormNameValue(name, value)));
    AppendParameterText(field.data(), field.size());
  } catch (const std::bad_alloc&) {
    LoseParameter();
  }
}

const void* CNetUploadFile::get_data(void*& file, void*& mapping, ULONG& size) {
  Trace("pFileName=%s\n", localFile_.get());
  const auto fail = [this](const char* message, ULONG error) -> const void* {
    Fail(message, WindowsError(error));
    return nullptr;
  };
  std::unique_ptr<File> opened(new (std::nothrow) File);
  std::unique_ptr<FileMapping> made(new (std::nothrow) FileMapping);
  if (!opened || !made) {
    Fail(kNoMemory, http::kNotEnoughMemory);
    return nullptr;
  }
  if (!opened->Open(localFile_.get())) return fail("CreateFile Failed", opened->error());
  if (!made->Create(*opened)) return fail("CreateFileMapping Failed", made->error());
  if (made->size() > std::numeric_limits<ULONG>::max()) {
    Fail("File Too Large", http::kFileTooLarge);
    return nullptr;
  }
  if (!made->View()) return fail("MapViewOfFile Failed", made->error());
  size = static_cast<ULONG>(made->size());
  file = opened.release();
  mapping = made.get();
  return made.release()->data();
}

void CNetUploadFile::release_data(void* file, void* mapping) {
  delete static_cast<FileMapping*>(mapping);
  delete static_cast<File*>(file);
}

bool CNetUploadFile::AddContentType(void* request) {
  const http::Error error = UnlessNoMemory(http::kNotEnoughMemory, [&] {
    if (!request) return http::kInvalidHandle;
    if (hasLostParameter()) throw std::bad_alloc();
    if (WideLength(boundary_.get()) == 0) return http::kInvalidParameter;
    const std::string line = multipart::ContentType(FormOf(clean_), boundary_.get());
    return http::AddHeader(AsRequest(request), line.c_str());
  });
  return !error || Fail("HttpAddRequestHeaders Failed", error);
}

bool CNetUploadFile::FillBody(UploadBody& body, bool partial) {
  try {
    // An upload without one of its fields would look complete to the server.
    if (hasLostParameter()) throw std::bad_alloc();
    // The clean form is UTF-8 (RFC 7578), the old one is in the system's code page.
    body.head = Bytes(clean_ ? kCodePageUtf8 : kCodePageSystem, JoinedText(get_head()));
    body.fields = GetParaString();
    body.tail = Bytes(kCodePageSystem, JoinedText(get_tail()));
    if (partial) {
      body.text = BytesOf(kCodePageUtf8, WideView(xml_));
      body.data = body.text.data();
      body.dataSize = body.text.size();
    } else {
      void *file = nullptr, *mapping = nullptr;
      ULONG size = 0;
      body.data = static_cast<const char*>(get_data(file, mapping, size));
      if (!body.data) return false;
      body.dataSize = size;
      body.file.reset(static_cast<File*>(file));
      body.mapping.reset(static_cast<FileMapping*>(mapping));
    }
  } catch (const std::bad_alloc&) {
    return Fail(kNoMemory, http::kNotEnoughMemory);
  }
  return body.size() <= std::numeric_limits<ULONG>::max() ||
         Fail("File Too Large", http::kFileTooLarge);
}

// The request.

bool CNetUploadFile::UploadFile(const WChar* path) {
  partial_ = false;
  return SetPart(kWholeFile, path) && Post() >= 0;
}

bool CNetUploadFile::UploadPartialFile(const WChar* path, const WChar* xml) {
  partial_ = true;
  xml_ = xml;
  return SetPart(kPartialUpload, path) && Post() >= 0;
}

/// When memory runs out, a setter keeps the old text. That would send the previous file, so the
/// upload fails instead.
bool CNetUploadFile::SetPart(const WChar* field, const WChar* path) {
  const unsigned long lostBefore = LostTexts();
  SetFieldName(field);
  SetLocalFile(path);
  return LostTexts() == lostBefore || Fail(kNoMemory, http::kNotEnoughMemory);
}

/// The messages are the same on every system. They name the steps by the Windows calls.
bool CNetUploadFile::OpenRequest(Handles& handles) {
  const http::Timeouts timeouts = {connectTimeout(), transferTimeout()};
  if (const auto error = http::Open(kAgent, proxy_.get(), timeouts, &handles.session))
    return Fail("InternetOpen Failed", error);
  if (const auto error = http::Connect(handles.session.get(), host(), secure_, &handles.connection))
    return Fail("InternetConnect Failed", error);
  if (userName_.get() && password_.get())
    if (const auto error =
            http::SetCredentials(handles.connection.get(), userName_.get(), password_.get()))
      return Fail("InternetSetOption Failed", error);
  if (const auto error =
          http::OpenPost(handles.connection.get(), postAcceptor(), true, &handles.request))
    return Fail("HttpOpenRequest Failed", error);
  return true;
}

LONG CNetUploadFile::Post() {
  errorCode_ = 1;
  status_ = 0;
  SetRedirected(false);
  Handles handles;
  if (!OpenRequest(handles)) return errorCode_;
  http::Request* const request = handles.request.get();
  const bool sent = partial_ ? UploadXMLContent(request) : UploadWholeFile(request);
  // A reply that cannot be read leaves the initial 1 (see the header).
  if (sent && ReadServerResponse(request) >= 0) errorCode_ = 0;
  return errorCode_;
}

bool CNetUploadFile::UploadWholeFile(void* request) {
  return Upload(request, false);
}

bool CNetUploadFile::UploadXMLContent(void* request) {
  return Upload(request, true);
}

bool CNetUploadFile::Upload(void* handle, bool partial) {
  http::Request* const request = AsRequest(handle);
  UploadBody body;
  if (!AddContentType(request) || !FillBody(body, partial)) return false;

  const auto total = static_cast<ULONG>(body.size());
  // Called again when the request has to be repeated, so the progress starts at 0.
  const auto write = [&] {
    ULONG sent = 0;
    return body.ForEachPiece([&](const char* bytes, std::size_t size) {
      if (const http::Error error = http::Write(request, bytes, size)) return error;
      sent += static_cast<ULONG>(size);
      return progress_ && !progress_(progressContext_, sent, total) ? http::kCancelled
                                                                    : http::kNone;
    });
  };
  bool started = false;
  const http::Error error = Exchange(request, total, write, &started);
  // Also after a failure: the server may have replied before it read everything.
  http::Status(request, &status_);
  SetRedirected(http::Redirected(request));
  if (!error) return true;
  return Fail(started ? "HttpEndRequest Failed" : "HttpSendRequestEx Failed", error);
}

bool CNetUploadFile::ShowRequest(bool (*take)(void* context, const void* bytes, std::size_t size),
                                 void* context) {
  Handles handles;
  UploadBody body;
  std::string head;
  if (!OpenRequest(handles) || !AddContentType(handles.request.get()) || !FillBody(body, partial_))
    return false;
  if (const auto error =
          http::HeadText(handles.request.get(), static_cast<ULONG>(body.size()), &head))
    return Fail(kNoMemory, error);
  const auto show = [&](const char* bytes, std::size_t size) {
    std::string piece(size, '\0');
    // The file may have been truncated since it was mapped.
    if (!CopyUnlessGone(piece.data(), bytes, size)) return http::kFileInvalid;
    return take(context, piece.data(), size) ? http::kNone : http::kCancelled;
  };
  const http::Error error = UnlessNoMemory(http::kNotEnoughMemory, [&] {
    const http::Error shown = show(head.data(), head.size());
    return shown ? shown : body.ForEachPiece(show);
  });
  return !error || Fail("ShowRequest Failed", error);
}

int CNetUploadFile::CheckContentLength(void* request) {
  std::uint64_t length = 0;
  const http::Error error =
      request ? http::ContentLength(AsRequest(request), &length) : http::kInvalidHandle;
  if (error) {
    Trace("!! CONTENT_LENGTH=0X%08X\n", static_cast<unsigned>(error));
    return -1;
  }
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<int>::max());
  const int number = static_cast<int>(std::min(length, kMost));
  Trace("--CONTENT_LENGTH=%d\n", number);
  return number;
}

bool CNetUploadFile::Authenticate(void* handle) {
  http::Request* const request = AsRequest(handle);
  int status = 0;
  if (const auto error = request ? SendWhole(request, nullptr, 0) : http::kInvalidHandle)
    return Fail("HttpSendRequest (Authentication) Failed", error);
  if (const auto error = http::Status(request, &status)) return Fail("HttpQueryInfo Failed", error);
  char data[1024];
  ULONG got = 1;
  for (int piece = 0; got > 0 && piece < kMostTraced; ++piece) {
    if (const auto error = http::Read(request, data, sizeof data, &got))
      return Fail("Authentication Failed", error);
    WChar text[sizeof data + 1] = {};
    BytesToWide(kCodePageUtf8, data, static_cast<int>(got), text, sizeof data);
    if (got > 0) Trace("Data=%s\n", static_cast<const WChar*>(text));
  }
  if (!IsAccessDenied(status)) return true;
  return Fail("Authentication Failed", http::kIncorrectPassword);
}

bool CNetUploadFile::Fail(const char* message, ULONG error) {
  SetErrorMsg(Join({message}).get());
  errorCode_ = ErrorCode(error);
  return false;
}

}  // namespace vosmere
