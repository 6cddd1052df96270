// The verb "post".
#include "tools/post.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <system_error>
#include <vector>

#include "tools/failure.h"
#include "tools/output.h"
#include "tools/progress.h"
#include "tools/report.h"
#include "tools/terminal.h"
#include "tools/text.h"
#include "vosmere/net/http_upload.h"
#include "vosmere/text/md5_text.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere::tool {
namespace {

constexpr std::size_t kDigestLength = 32;
constexpr int kFirstRedirectStatus = 300;
constexpr int kFirstErrorStatus = 400;
constexpr int kTooLargeStatus = 413;
constexpr LONG kSentOnly = 1;  // what Post returns for a reply that cannot be read

namespace fs = std::filesystem;

/// An error message about a host or a file.
std::string Error(const std::string& about, const std::string& what) {
  return Printable(about) + ": error: " + what;
}

[[noreturn]] void Stop(const std::string& message, const std::string& about = "vosmere") {
  throw Failure{kTrouble, Error(about, message)};
}

// Overwrites a secret. The writes are volatile, because the compiler may remove plain writes to
// memory that is not read again.
template <class Unit>
void Wipe(Unit* text, std::size_t length) {
  for (volatile Unit* unit = text; length > 0; --length) *unit++ = 0;
}

std::string AskPassword(const std::string& user) {
  std::string password;
  password.reserve(1024);  // a reallocation would leave copies of the password in memory
  const bool read = IsTerminal(Stream::kInput)
                        ? ReadSecretLine("Password for " + Printable(user) + ": ", password)
                        : static_cast<bool>(std::getline(std::cin, password));
  if (!read) Stop("no password was given");
  if (!password.empty() && password.back() == '\r') password.pop_back();
  return password;
}

/// The MD5 digest in lower-case hexadecimal digits, as servers compute it.
void DigestOfPassword(const std::string& user, WChar (&digest)[kDigestLength + 1]) {
  std::string password = AskPassword(user);
  std::vector<WChar> wide(password.size() + 1);  // the only copy; it is wiped below
  detail::Utf8ToWide(password.data(), password.size(), wide.data());
  CEncodingTool::GetWideCharLowerMD5(wide.data(), digest);
  Wipe(wide.data(), wide.size());
  Wipe(password.data(), password.size());
}

/// Sets the name and the password that a server which answers 401 gets.
void SetLogin(CNetUploadFile& upload, const std::string& name) {
  std::string password = AskPassword(name);
  std::vector<WChar> wide(password.size() + 1);
  detail::Utf8ToWide(password.data(), password.size(), wide.data());
  upload.SetUserName(Wide(name));
  upload.SetPassword(wide.data());
  Wipe(wide.data(), wide.size());
  Wipe(password.data(), password.size());
}

void Redact(WChar (&digest)[kDigestLength + 1]) {
  for (std::size_t i = 0; i < kDigestLength; ++i) digest[i] = '*';
  digest[kDigestLength] = 0;
}

/// Calls `add`, which adds a field, and fails if the field was dropped because it does not fit.
template <class Add>
void AddOrStop(CNetUploadFile& upload, const std::string& name, Add add) {
  const std::string before = upload.GetParaString();
  const unsigned long lostBefore = LostTexts();
  add();
  if (LostTexts() != lostBefore) throw std::bad_alloc();
  if (before == upload.GetParaString())
    Stop("the field '" + Printable(name) + "' is too long: all fields together can have " +
         std::to_string(CNetBase::kMostParameterBytes) + " bytes");
}

void AddFields(CNetUploadFile& upload, const PostOptions& options) {
  if (!options.user.empty()) {
    WChar digest[kDigestLength + 1];
    options.dryRun ? Redact(digest) : DigestOfPassword(options.user, digest);
    AddOrStop(upload, "username", [&] { upload.SetUserNamePswMD5(Wide(options.user), digest); });
  }
  for (const std::string& field : options.fields) {
    const std::size_t equals = field.find('=');
    const std::string name = field.substr(0, equals);
    AddOrStop(upload, name,
              [&] { upload.AddParameter(Wide(name), Wide(field.substr(equals + 1))); });
  }
}

/// A progress bar on standard error: one line that is overwritten. None without a terminal, and
/// none for an upload that is over soon.
class ProgressBar {
 public:
  explicit ProgressBar(CNetUploadFile& upload) {
    if (IsTerminal(Stream::kErrors)) upload.SetProgress(&Show, this);
  }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar() {
    if (percent_ >= 0) std::fputc('\n', stderr);
  }

 private:
  static bool Show(void* self, ULONG sent, ULONG total) {
    auto& bar = *static_cast<ProgressBar*>(self);
    const int percent = static_cast<int>(100.0 * sent / total);
    if (percent == bar.percent_ || std::chrono::steady_clock::now() - bar.begin_ < kPatience)
      return true;
    bar.percent_ = percent;
    const std::string done(static_cast<std::size_t>(percent) * 2 / 5, '#');
    std::fprintf(stderr, "\r[%-40s] %3d%% of %.1f MB", done.c_str(), percent, total / 1e6);
    std::fflush(stderr);
    return true;
  }

  const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  int percent_ = -1;
};

/// Throws a Failure with the message for this error code.
[[noreturn]] void StopForCode(LONG code, const PostOptions& options) {
  constexpr int kFirstOfHttp = 12000;
  const int number = code & 0xFFFF;
  const char* const reason = ReasonOfUploadError(code);
  const bool isOfFile = number < kFirstOfHttp;
  if (reason) Stop(reason, isOfFile ? options.file : options.host);
  if (isOfFile) Stop("cannot be read", options.file);
  Stop("the upload failed with error " + std::to_string(number) + " of the HTTP client",
       options.host);
}

/// Uploads the file. The reply is written to `out`, or kept in `upload` if `out` is null; the
/// caller must check whether `out` failed. Throws Failure if there is no reply or an incomplete
/// one, unless its status already says that the server rejected the file.
void Send(CNetUploadFile& upload, const PostOptions& options, std::ostream* out) {
  const auto write = [](void* to, const void* bytes, std::size_t size) {
    auto& stream = *static_cast<std::ostream*>(to);
    return static_cast<bool>(
        stream.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(size)));
  };
  const unsigned long lostBefore = LostTexts();
  if (out) upload.SetResponseSink(write, out);
  {
    const ProgressBar bar(upload);
    upload.UploadFile(FilePath(PathOf(options.file)).get());
  }
  if (LostTexts() != lostBefore) throw std::bad_alloc();
  const LONG code = upload.GetErrorCode();
  if (code == 0 || upload.GetStatus() >= kFirstErrorStatus || (out && !*out)) return;
  if (code != kSentOnly) StopForCode(code, options);
  throw Failure{kBadFile, Error(options.host, "the file was sent, but the reply is incomplete")};
}

void SendToFile(CNetUploadFile& upload, const PostOptions& options, const fs::path& path) {
  std::ofstream file(path, std::ios::binary);
  if (file) Send(upload, options, &file);
  file.close();
  if (!file) Stop("cannot be written: " + std::generic_category().message(errno), options.output);
}

void CheckOutput() {
  if (!std::cout) Stop("cannot be written", "standard output");
}

void SendTo(CNetUploadFile& upload, const PostOptions& options) {
  std::error_code ignored;
  if (options.output == "-") {
    MakeOutputBinary();
    Send(upload, options, &std::cout);
    CheckOutput();
  } else if (fs::is_other(PathOf(options.output), ignored)) {  // a device or a pipe: not replaced
    SendToFile(upload, options, PathOf(options.output));
  } else {
    WriteOutput(options.output, [&](const FilePath& path) -> std::optional<vosmere::Error> {
      SendToFile(upload, options, path.native());
      return {};
    });
  }
}

/// Escapes control characters so that a reply cannot control the terminal. Line ends and tabs stay.
std::string PrintableLines(const std::string& text) {
  std::string lines, line;
  for (const char c : text) {
    if (c != '\n' && c != '\t') {
      line += c;
      continue;
    }
    if (c == '\n' && !line.empty() && line.back() == '\r') line.pop_back();
    lines += Printable(line) + c;
    line.clear();
  }
  return lines + Printable(line);
}

/// How many code units of a text to print at a time. Splits between lines if possible, and never
/// inside a surrogate pair.
std::size_t SliceOf(WideView text) {
  constexpr std::size_t kMost = std::size_t{64} * 1024;
  if (text.size <= kMost) return text.size;
  for (std::size_t end = kMost; end > 0; --end)
    if (text[end - 1] == '\n') return end;
  return FirstWhole(text, kMost).size;
}

SystemString DetachReply(CNetUploadFile& upload) {
  const unsigned long lostBefore = LostTexts();
  SystemString reply(upload.DetachResponse());
  if (LostTexts() != lostBefore) throw std::bad_alloc();
  return reply;
}

std::string ReplyOf(CNetUploadFile& upload) {
  const SystemString reply = DetachReply(upload);
  return ToUtf8(WideView(reply.get(), SysStringLen(reply.get())));
}

void PrintReply(CNetUploadFile& upload) {
  const SystemString reply = DetachReply(upload);
  const bool seen = IsTerminal(Stream::kOutput);
  if (!seen) MakeOutputBinary();
  std::string text;
  for (WideView rest(reply.get(), SysStringLen(reply.get())); !rest.empty();) {
    const std::size_t slice = SliceOf(rest);
    text = ToUtf8(rest.First(slice));
    std::cout << (seen ? PrintableLines(text) : text);
    rest = rest.From(slice);
  }
  if (seen && !text.empty() && text.back() != '\n') std::cout << '\n';
}

/// The error message for a reply; empty if the file was delivered and the reply is complete.
std::string Objection(const CNetUploadFile& upload, const PostOptions& options) {
  const int status = upload.GetStatus();
  const std::string answer = "the server answered " + std::to_string(status);
  if (upload.WasRedirected())
    return Error(options.host, "the server redirected the request, and the file was not delivered");
  if (status == kTooLargeStatus)
    return Error(options.file, "the file is too large for the server (413)");
  if (status >= kFirstErrorStatus) return Error(options.host, answer);
  if (status >= kFirstRedirectStatus)
    return Error(options.host, answer + ", and the file was not delivered");
  if (upload.IsResponseCut())
    return Error(options.host, "the reply is too long and was cut (--output saves all of it)");
  return {};
}

int ShowRequest(CNetUploadFile& upload, const PostOptions& options) {
  upload.SetFieldName(Wide(u"WholeFile"));
  upload.SetLocalFile(FilePath(PathOf(options.file)).get());
  MakeOutputBinary();
  const bool shown = upload.ShowRequest(
      [](void*, const void* bytes, std::size_t size) {
        return static_cast<bool>(
            std::cout.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(size)));
      },
      nullptr);
  CheckOutput();
  if (!shown) StopForCode(upload.GetErrorCode(), options);
  return kFine;
}

}  // namespace

int Post(const PostOptions& options) {
  CNetUploadFile upload;
  upload.SetHost(Wide(options.host));
  upload.SetPostAcceptor(Wide(options.path));
  upload.SetSecure(options.secure);
  upload.SetClean(options.clean);
  upload.SetMostPieces(options.replyLimit / 2 + options.replyLimit % 2);  // of 2 KiB
  const auto milliseconds = [](double seconds) { return static_cast<LONG>(seconds * 1000); };
  upload.SetTimeouts(milliseconds(options.connectLimit), milliseconds(options.transferLimit));
  if (!options.proxy.empty()) upload.SetProxy(Wide(options.proxy));
  AddFields(upload, options);
  if (!options.login.empty() && !options.dryRun) SetLogin(upload, options.login);
  if (std::error_code ignored; fs::is_other(PathOf(options.file), ignored))
    Stop("it is not a regular file", options.file);
  if (options.dryRun) return ShowRequest(upload, options);

  if (options.output.empty()) {
    Send(upload, options, nullptr);
    if (!options.json) PrintReply(upload);
  } else {
    SendTo(upload, options);
  }
  const std::string objection = Objection(upload, options);
  if (options.json)
    PrintReport({{"delivered", objection.empty()},
                 {"status", upload.GetStatus()},
                 {"problem", objection.empty() ? Json() : Json(objection)},
                 {"reply", options.output.empty() ? Json(ReplyOf(upload)) : Json()}});
  else if (!objection.empty())
    std::cerr << objection << '\n';
  return objection.empty() ? kFine : kBadFile;
}

}  // namespace vosmere::tool
