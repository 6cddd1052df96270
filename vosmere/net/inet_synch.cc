#include "vosmere/net/inet_synch.h"

#include <mutex>
#include <utility>

#include "vosmere/base/owned_text.h"
#include "vosmere/net/exchange.h"
#include "vosmere/net/join.h"
#include "vosmere/net/net_base.h"

namespace vosmere {
namespace {

constexpr const char* kAgent = "Vosmere";
constexpr const char* kDefaultServer = "test.vosmere.example";
constexpr const char* kFormType = "Content-Type: application/x-www-form-urlencoded";
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
  http::Session* session = nullptr;
  http::Connection* connection = nullptr;
  http::Request* request = nullptr;
  const http::Timeouts timeouts = {CNetBase::kConnectTimeout, CNetBase::kTransferTimeout};
  const bool opened =
      !http::Open(kAgent, nullptr, timeouts, &session) &&
      !http::Connect(session, TestServer().get(), false, &connection) &&
      !http::OpenPost(connection, Join({"post.php"}).get(), false, &request);
  if (opened && !http::AddHeader(request, kFormType)) SendWhole(request, kForm, sizeof kForm - 1);
  if (request) http::Close(request);
  if (connection) http::Close(connection);
  if (session) http::Close(session);
}

void CInetSynch::SetTestServer(const WChar* host) {
  const std::lock_guard lock(serverMutex);
  server.AssignOrNull(host);
}

}  // namespace vosmere
