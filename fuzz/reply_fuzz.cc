// Any reply of a server is an error or a status with a part of what was sent. The first byte is the
// size of the pieces in which it is sent. The server is also the proxy, so that a redirect leads
// nowhere else.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <string>

#include "tests/support/loopback_server.h"
#include "tests/support/wide.h"
#include "vosmere/net/http_upload.h"

using namespace vosmere;
using namespace vosmere::test;

namespace {

std::mutex mutex;
std::string reply;
std::size_t pieces = 1;

void Answer(Peer& peer) {
  std::string bytes;
  std::size_t size;
  {
    const std::lock_guard lock(mutex);
    bytes = reply;
    size = pieces;
  }
  if (!peer.ReadRequest()) return;
  for (std::size_t at = 0; at < bytes.size(); at += size)
    if (!peer.Send(bytes.substr(at, size))) return;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  static LoopbackServer server({Answer});
  std::string sent(reinterpret_cast<const char*>(data) + 1, size - 1);
  {
    const std::lock_guard lock(mutex);
    reply = sent;
    pieces = std::max<std::size_t>(data[0], 1) * (data[0] < 128 ? 1 : 64);
  }
  CNetUploadFile upload;
  upload.SetProxy(W(server.host()));
  upload.SetHost(W("localhost:1"));
  upload.SetPostAcceptor(W("/x"));
  upload.SetTimeouts(1000, 1000);
  upload.UploadPartialFile(W("name"), W("text"));
  const OwnedBstr response(upload.DetachResponse());
  if (upload.GetErrorCode() != 0) return 0;
  // Bytes that are no UTF-8 become replacement characters.
  const std::string text = response.get() ? response.utf8() : "";
  if (text.find("\xEF\xBF\xBD") == text.npos && sent.find(text) == sent.npos) std::abort();
  return 0;
}
