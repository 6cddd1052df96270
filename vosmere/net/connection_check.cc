// CInetSynch: the form that it sends, and its test server.
#include "vosmere/net/connection_check.h"

#include <mutex>
#include <utility>

#include "vosmere/base/internal/wide_literal.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/net/http_session.h"
#include "vosmere/net/internal/exchange.h"
#include "vosmere/net/internal/join.h"

namespace vosmere {
namespace {

constexpr const char* kAgent = "Vosmere";
constexpr const char* kDefaultServer = "test.vosmere.example";
constexpr const char* kFormType = "Content-Type: application/x-www-form-urlencoded";
constexpr WideLiteral kPath(u"post.php");
constexpr char kForm[] = "name=Vosmere&type=test";

std::mutex serverMutex;
SystemText server;

JoinedText TestServer() {
  const std::lock_guard lock(serverMutex);
  return server.get() ? Join({server.get()}) : Join({kDefaultServer});
}

}  // namespace

CInetSynch::~CInetSynch() = default;

void CInetSynch::UploadColct(CColctNode*, int) {
  http::Owned<http::Session> session;
  http::Owned<http::Connection> connection;
  http::Owned<http::Request> request;
  const http::Timeouts timeouts = {CNetBase::kConnectTimeout, CNetBase::kTransferTimeout};
  if (http::Open(kAgent, nullptr, timeouts, &session) ||
      http::Connect(session.get(), TestServer().get(), false, &connection) ||
      http::OpenPost(connection.get(), kPath, false, &request) ||
      http::AddHeader(request.get(), kFormType))
    return;
  SendWhole(request.get(), kForm, sizeof kForm - 1);
}

void CInetSynch::SetTestServer(const WChar* host) {
  const std::lock_guard lock(serverMutex);
  server.AssignOrNull(host);
}

}  // namespace vosmere
