// Benchmarks of uploading a file of 100 MB to a server in the same process that discards it,
// compared with a plain socket that sends the same mapped bytes, and with the curl command.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <netinet/in.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "vosmere/cpp/text.h"
#include "vosmere/net/http_upload.h"

namespace vosmere::bench {
namespace {

constexpr std::size_t kFileBytes = 100 * 1000 * 1000;
constexpr long kMostGrowth = 2 * 1024;  // growth of the resident memory, in KiB

[[noreturn]] void Die(const char* what) {
  std::fprintf(stderr, "http_bench: %s\n", what);
  std::exit(1);
}

/// Reads each request to the end given by its length, and answers.
void Serve(int client) {
  static std::vector<char> bytes(256 * 1024);  // static, so that no upload is charged with it
  std::string head;
  std::size_t end = std::string::npos, left = 0;
  while (end == std::string::npos || left > 0) {
    const ssize_t got = recv(client, bytes.data(), bytes.size(), 0);
    if (got <= 0) break;
    if (end != std::string::npos) {
      left -= static_cast<std::size_t>(got);
      continue;
    }
    head.append(bytes.data(), static_cast<std::size_t>(got));
    end = head.find("\r\n\r\n");
    const std::size_t length = head.find("Content-Length: ");
    if (end != std::string::npos)
      left = std::strtoul(head.c_str() + length + 16, nullptr, 10) - (head.size() - end - 4);
  }
  constexpr char kReply[] = "HTTP/1.0 200 OK\r\nContent-Length: 2\r\n\r\nok";
  send(client, kReply, sizeof kReply - 1, MSG_NOSIGNAL);
  close(client);
}

sockaddr_in Loopback(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

int StartServer() {
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address = Loopback(0);
  socklen_t size = sizeof address;
  if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener, 8) != 0)
    Die("cannot listen");
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
  std::thread([listener] {
    for (;;) Serve(accept(listener, nullptr, nullptr));
  }).detach();
  return ntohs(address.sin_port);
}

/// The file and the server, created on first use and kept until the program ends.
class Setting {
 public:
  static Setting& Get() {
    static Setting setting;
    return setting;
  }
  ~Setting() { std::filesystem::remove(path_); }

  const std::string& path() const { return path_; }
  int port() const { return port_; }
  std::string host() const { return "127.0.0.1:" + std::to_string(port_); }

 private:
  Setting() {
    const std::string block(1000 * 1000, 'x');
    std::ofstream file(path_, std::ios::binary);
    for (std::size_t done = 0; done < kFileBytes; done += block.size()) file << block;
  }

  std::string path_ =
      std::filesystem::temp_directory_path() / ("http_bench." + std::to_string(getpid()));
  int port_ = StartServer();
};

bool UploadWithVosmere() {
  const Setting& setting = Setting::Get();
  CNetUploadFile upload;
  upload.SetHost(Wide(setting.host()));
  upload.UploadFile(Wide(setting.path()));
  return upload.GetErrorCode() == 0;
}

bool UploadWithSocket() {
  const Setting& setting = Setting::Get();
  const int file = open(setting.path().c_str(), O_RDONLY | O_CLOEXEC);
  void* const view = mmap(nullptr, kFileBytes, PROT_READ, MAP_SHARED, file, 0);
  const int server = socket(AF_INET, SOCK_STREAM, 0);
  const sockaddr_in address = Loopback(setting.port());
  bool sent = connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  const std::string head =
      "POST / HTTP/1.0\r\nContent-Length: " + std::to_string(kFileBytes) + "\r\n\r\n";
  send(server, head.data(), head.size(), MSG_NOSIGNAL);
  for (std::size_t done = 0; sent && done < kFileBytes;) {
    const ssize_t part =
        send(server, static_cast<char*>(view) + done, kFileBytes - done, MSG_NOSIGNAL);
    sent = part > 0;
    done += static_cast<std::size_t>(part);
  }
  char reply[256];
  sent = sent && recv(server, reply, sizeof reply, 0) > 0;
  close(server);
  munmap(view, kFileBytes);
  close(file);
  return sent;
}

bool UploadWithCurl() {
  const Setting& setting = Setting::Get();
  const std::string command =
      "curl --silent --noproxy '*' --http1.0 --output /dev/null --form file=@" + setting.path() +
      " http://" + setting.host() + "/";
  return std::system(command.c_str()) == 0;
}

/// The peak of the resident memory since Reset, in KiB, including mapped files.
class PeakMemory {
 public:
  static void Reset() {
    malloc_trim(0);  // memory that earlier uploads freed must not hide new allocations
    std::ofstream("/proc/self/clear_refs") << 5;
  }
  static long Get() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
      if (line.rfind("VmHWM:", 0) == 0) return std::strtol(line.c_str() + 6, nullptr, 10);
    return 0;
  }
};

void Measure(benchmark::State& state, bool (*upload)()) {
  Setting::Get();
  for (auto _ : state)
    if (!upload()) state.SkipWithError("the upload failed");
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * kFileBytes));
}

void Upload100MB(benchmark::State& state) {
  CNetUploadFile small;  // a first upload allocates what does not depend on the size
  small.SetHost(Wide(Setting::Get().host()));
  small.UploadPartialFile(Wide("small"), Wide("small"));
  PeakMemory::Reset();
  const long before = PeakMemory::Get();
  if (!UploadWithVosmere()) state.SkipWithError("the upload failed");
  const long growth = PeakMemory::Get() - before;
  state.counters["peak KiB"] = static_cast<double>(growth);
  state.SetLabel(growth <= kMostGrowth ? "peak at most 2 MB: yes" : "peak at most 2 MB: NO");
  Measure(state, UploadWithVosmere);
}

void Add(const char* name, void (*run)(benchmark::State&)) {
  benchmark::RegisterBenchmark(name, run)->UseRealTime()->Unit(benchmark::kMillisecond);
}

[[maybe_unused]] const bool registered = [] {
  Add("Upload/100MB/vosmere", Upload100MB);
  Add("Upload/100MB/socket", [](benchmark::State& state) { Measure(state, UploadWithSocket); });
  Add("Upload/100MB/curl", [](benchmark::State& state) { Measure(state, UploadWithCurl); });
  return true;
}();

}  // namespace
}  // namespace vosmere::bench
