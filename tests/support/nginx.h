// A real web server with TLS, started and stopped by the test. Only where one is installed.
#pragma once

#include <cstdlib>
#include <string>

#include "tests/support/files.h"
#include "tests/support/socket.h"

namespace vosmere::test {

class Nginx {
 public:
  static bool IsInstalled() { return Run("command -v nginx") && Run("command -v openssl"); }

  /// `locations` is the content of the HTTPS server's configuration; PORT is replaced by its port.
  explicit Nginx(std::string locations) {
    for (std::size_t at; (at = locations.find("PORT")) != locations.npos;)
      locations.replace(at, 4, std::to_string(port()));
    std::string paths;
    for (const char* kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
      paths += std::string(kind) + "_temp_path " + kind + ";";
    WriteBytes(folder_ / "nginx.conf",
               "pid nginx.pid; worker_processes 1; events {}\n"
               "http { access_log off; " +
                   paths +
                   "\n"
                   "server { listen 127.0.0.1:" +
                   std::to_string(port()) +
                   " ssl;\n"
                   "ssl_certificate cert.pem; ssl_certificate_key key.pem;\n" +
                   locations + "}}\n");
    WriteBytes(folder_ / "users", "joe:{PLAIN}secret\n");
    runs_ = Run("cd " + (folder_ / "").string() +
                " && openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes"
                " -keyout key.pem -out cert.pem -days 2 -subj /CN=test"
                " -addext subjectAltName=IP:127.0.0.1 && chmod -R a+rwX . && " +
                Command() + " -t && (NGINX='" + std::to_string(listener_.handle()) + ";' " +
                Command() + " &)");
  }
  Nginx(const Nginx&) = delete;
  Nginx& operator=(const Nginx&) = delete;
  ~Nginx() { Run(Command() + " -s stop"); }

  bool runs() const { return runs_; }
  std::string host() const { return "127.0.0.1:" + std::to_string(port()); }
  int port() const { return listener_.Port(); }
  std::string certificate() const { return (folder_ / "cert.pem").string(); }

 private:
  static bool Run(const std::string& command) {
    return std::system(("(" + command + ") >/dev/null 2>&1").c_str()) == 0;
  }
  std::string Command() const {
    return "nginx -e stderr -p " + (folder_ / "").string() + " -c nginx.conf";
  }

  TempFolder folder_;
  Socket listener_ = Socket::Listen();  // inherited by the server, so nobody has to wait for it
  bool runs_ = false;
};

}  // namespace vosmere::test
