#include "tools/post.h"

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>

#include "tools/failure.h"
#include "tools/terminal.h"
#include "tools/text.h"
#include "vosmere/net/http_upload.h"
#include "vosmere/text/md5_text.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere::tool {
namespace {

constexpr std::size_t kDigestLength = 32;
constexpr int kFirstErrorStatus = 400;

[[noreturn]] void Stop(const std::string& message) {
  throw Failure{kTrouble, "vosmere: error: " + message};
}

// The compiler may drop a plain write to what is never read again.
template <class Unit>
void Wipe(Unit* text, std::size_t length) {
  for (volatile Unit* unit = text; length > 0; --length) *unit++ = 0;
}

std::string AskPassword(const std::string& user) {
  std::string password;
  password.reserve(1024);  // growing would leave copies behind
  const bool read = IsTerminal(Stream::kInput)
                        ? ReadSecretLine("Password for " + Printable(user) + ": ", password)
                        : static_cast<bool>(std::getline(std::cin, password));
  if (!read) Stop("no password");
  if (!password.empty() && password.back() == '\r') password.pop_back();
  return password;
}

/// Lower case, as servers compute it.
void DigestOfPassword(const std::string& user, WChar (&digest)[kDigestLength + 1]) {
  std::string password = AskPassword(user);
  const SystemString wide = ToWide(password);
  CEncodingTool::GetWideCharLowerMD5(wide.get(), digest);
  Wipe(wide.get(), SysStringLen(wide.get()));
  Wipe(password.data(), password.size());
}

void Redact(WChar (&digest)[kDigestLength + 1]) {
  for (std::size_t i = 0; i < kDigestLength; ++i) digest[i] = '*';
  digest[kDigestLength] = 0;
}

/// Runs `add`, which adds a field, and stops when the upload dropped it.
template <class Add>
void AddOrStop(CNetUploadFile& upload, const std::string& name, Add add) {
  const std::string before = upload.GetParaString();
  add();
  if (before == upload.GetParaString())
    Stop("the field '" + Printable(name) + "' is too long: all fields together have " +
         std::to_string(CNetBase::kMostParameterBytes) + " bytes");
}

void AddFields(CNetUploadFile& upload, const PostOptions& options) {
  if (!options.user.empty()) {
    WChar digest[kDigestLength + 1];
    options.dryRun ? Redact(digest) : DigestOfPassword(options.user, digest);
    AddOrStop(upload, "username",
              [&] { upload.SetUserNamePswMD5(ToWide(options.user).get(), digest); });
  }
  for (const std::string& field : options.fields) {
    const std::size_t equals = field.find('=');
    const std::string name = field.substr(0, equals);
    AddOrStop(upload, name, [&] {
      upload.AddParameter(ToWide(name).get(), ToWide(field.substr(equals + 1)).get());
    });
  }
}

/// One line that is drawn over itself.
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
    if (percent == bar.percent_) return true;
    bar.percent_ = percent;
    const std::string done(static_cast<std::size_t>(percent) * 2 / 5, '#');
    std::fprintf(stderr, "\r[%-40s] %3d%% of %.1f MB", done.c_str(), percent, total / 1e6);
    std::fflush(stderr);
    return true;
  }

  int percent_ = -1;
};

std::string Reason(LONG code) {
  constexpr struct {
    int number;
    const char* reason;
  } kReasons[] = {
      {2, "there is no such file"},
      {3, "there is no such folder"},
      {5, "the file cannot be read"},
      {222, "that is not a plain file"},
      {223, "a request has less than 4 GiB"},
      {1006, "the file has changed meanwhile"},
      {12002, "the server takes too long"},
      {12005, "that is no name of a host"},
      {12007, "the host is not known"},
      {12017, "the output cannot be written"},
      {12029, "the server cannot be reached"},
      {12030, "the connection was broken off"},
      {12031, "the connection was broken off"},
      {12037, "the server's certificate is out of date"},
      {12038, "the server's certificate is for another host"},
      {12040, "the server leads away from HTTPS"},
      {12045, "the server's certificate is not trusted"},
      {12152, "the reply is not HTTP"},
      {12156, "the server leads in circles"},
      {12157, "the server does not speak HTTPS"},
  };
  const int number = code & 0xFFFF;
  for (const auto& known : kReasons)
    if (known.number == number) return known.reason;
  return "error " + std::to_string(number);
}

void CheckSent(const CNetUploadFile& upload) {
  const LONG code = upload.GetErrorCode();
  if (code == 1) Stop("the file was sent, but the reply cannot be read");
  if (code != 0) Stop(Reason(code) + " (" + ToUtf8(upload.GetErrorMsg()) + ")");
}

/// Line ends and tabs stay; on a terminal nothing else may steer it.
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

void PrintReply(CNetUploadFile& upload) {
  const SystemString reply(upload.DetachResponse());
  char* bytes = nullptr;
  int length = 0;
  if (!CUnicodeTool::BSTRGetUTF8(reply.get(), &bytes, &length)) throw std::bad_alloc();
  const std::unique_ptr<char, FreeWith<CUnicodeTool::DeleteBuffer>> owned(bytes);
  const std::string text(bytes, static_cast<std::size_t>(length));
  const bool seen = IsTerminal(Stream::kOutput);
  if (!seen) MakeOutputBinary();
  std::cout << (seen ? PrintableLines(text) : text);
  if (seen && !text.empty() && text.back() != '\n') std::cout << '\n';
}

int ShowRequest(CNetUploadFile& upload) {
  MakeOutputBinary();
  const bool shown = upload.ShowRequest(
      [](void*, const void* bytes, std::size_t size) {
        return static_cast<bool>(
            std::cout.write(static_cast<const char*>(bytes), static_cast<std::streamsize>(size)));
      },
      nullptr);
  if (!shown) CheckSent(upload);
  return shown ? kFine : kTrouble;
}

}  // namespace

int Post(const PostOptions& options) {
  CNetUploadFile upload;
  upload.SetHost(ToWide(options.host).get());
  upload.SetPostAcceptor(ToWide(options.path).get());
  upload.SetSecure(options.secure);
  upload.SetClean(options.clean);
  AddFields(upload, options);
  const SystemString file = ToWide(options.file);
  if (std::error_code ignored; std::filesystem::is_other(PathOf(options.file), ignored))
    Stop("that is not a plain file");
  if (options.dryRun) {
    upload.SetFieldName(Wide(u"WholeFile"));
    upload.SetLocalFile(file.get());
    return ShowRequest(upload);
  }

  {
    const ProgressBar bar(upload);
    upload.UploadFile(file.get());
  }
  CheckSent(upload);
  PrintReply(upload);
  if (upload.GetStatus() < kFirstErrorStatus) return kFine;
  std::cerr << "vosmere: error: the server answers " << upload.GetStatus() << '\n';
  return kBadFile;
}

}  // namespace vosmere::tool
