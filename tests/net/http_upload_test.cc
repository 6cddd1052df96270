#include "vosmere/net/http_upload.h"

#include <memory>

#include "tests/support/platform.h"
#include "tests/support/sender.h"
#include "tests/support/test.h"
#include "tests/support/traces.h"

namespace vosmere::test::http_upload {

using testing::AllOf;
using testing::Each;
using testing::EndsWith;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

std::string BodyOf(const std::string& request) {
  const std::size_t end = request.find("\r\n\r\n");
  return end == request.npos ? "(no body)" : request.substr(end + 4);
}

TEST(NetUploadFile, SendsAFileOrATextWithItsFields) {
  LoopbackServer server({ReplyOk("stored")});
  Sender sender(server.host(), std::string("\0\x1A\xFF\r\n", 5));
  EXPECT_TRUE(sender.upload.UploadPartialFile(W("/nowhere/part.xml"), W("<é/>")));
  sender.upload.SetPostAcceptor(W("/up load.php?a=1"));
  sender.upload.AddParameter(W("ключ"), W("один"));
  sender.upload.AddParameter(W("second"), nullptr);
  sender.upload.AddParameter(nullptr, W("none"));
  EXPECT_EQ(sender.Send(), 0);
  EXPECT_EQ(sender.upload.GetStatus(), 200);
  EXPECT_EQ(sender.Response(), "storedstored");

  Sender clean(server.host());
  clean.upload.SetClean(true);
  clean.upload.AddParameter(W("a\"b\r\n"), W("1\"2"));
  EXPECT_TRUE(clean.upload.UploadPartialFile(W("C:\\my files\\ж\".xml"), W("x")));
  EXPECT_EQ(server.requests()[0], GoldenRequest("text", server));
  EXPECT_EQ(server.requests()[1], GoldenRequest("whole_file", server, sender.file().string()));
  EXPECT_EQ(server.requests()[2], GoldenRequest("clean", server));
}

TEST(NetUploadFile, FilesOfAnySizeArriveAsTheyAre) {
  for (const std::size_t size : {0, 1, 655359, 655360, 655361, 3000000}) {
    std::string bytes(size, 0);
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 251);
    LoopbackServer server({ReplyOk()});
    Sender sender(server.host(), bytes);
    EXPECT_EQ(sender.Send(), 0);
    const std::string request = server.requests()[0], body = BodyOf(request);
    EXPECT_THAT(request.substr(0, 500),
                HasSubstr("Content-Length: " + std::to_string(body.size()) + "\r\n"));
    EXPECT_TRUE(body.find("\r\n\r\n" + bytes + "\r\n--BOUNDARY--\r\n") != body.npos) << size;
  }
}

TEST(NetUploadFile, EachObjectHasABoundaryOfItsOwn) {
  const auto tail = [] { return OwnedBstr(CNetUploadFile().get_tail()).utf8(); };
  EXPECT_THAT(tail(), AllOf(SizeIs(4 + 36 + 4), StartsWith("\r\n--"), EndsWith("--\r\n")));
  EXPECT_NE(tail(), tail());
}

TEST(NetUploadFile, FieldsOfMoreThan1024BytesAreDropped) {
  CNetUploadFile upload;
  const std::size_t frame = OwnedBstr(upload.FormNameValue(W("a"), nullptr)).size();
  upload.AddParameter(W("a"), Repeated(1025 - frame));
  EXPECT_STREQ(upload.GetParaString(), "");
  upload.AddParameter(W("a"), Repeated(1024 - frame));
  EXPECT_EQ(std::string(upload.GetParaString()).size(), 1024u);
}

TEST(NetUploadFile, WhatCannotBeSentSaysWhyAndReachesNobody) {
  constexpr std::uintmax_t k4GiB = std::uintmax_t{1} << 32;
  const struct {
    void (*prepare)(Sender& sender);
    LONG code;
    const char* message;
  } cases[] = {
      {[](Sender& s) { s.upload.SetBoundary(W("")); }, Code(87), "HttpAddRequestHeaders Failed"},
      {[](Sender& s) { s.upload.SetBoundary(W("x\r\nEvil: 1")); }, Code(87),
       "HttpAddRequestHeaders Failed"},
      {[](Sender& s) { s.upload.SetBoundary(W("x\n")); }, Code(87), "HttpAddRequestHeaders Failed"},
      {[](Sender& s) {
         s.upload.SetUserName(W("joe\r\nEvil: 1"));
         s.upload.SetPassword(W("secret"));
       },
       Code(87), "InternetSetOption Failed"},
      {[](Sender& s) { s.upload.SetHost(W("no such host")); }, Code(12005),
       "InternetConnect Failed"},
      {[](Sender& s) { std::filesystem::remove(s.file()); }, Code(2), "CreateFile Failed"},
      {[](Sender& s) {
         std::filesystem::remove(s.file());
         std::filesystem::create_directory(s.file());
       },
       Code(5), "CreateFile Failed"},
      {[](Sender& s) { std::filesystem::resize_file(s.file(), k4GiB); }, Code(223),
       "File Too Large"},
      {[](Sender& s) { std::filesystem::resize_file(s.file(), k4GiB - 1); }, Code(223),
       "File Too Large"},  // with the text around the file
  };
  LoopbackServer server({ReplyOk()});
  for (const auto& c : cases) {
    Sender sender(server.host());
    c.prepare(sender);
    const Traces traces;
    EXPECT_FALSE(sender.upload.UploadFile(W(sender.file())));
    EXPECT_EQ(sender.upload.GetErrorCode(), c.code) << c.message;
    EXPECT_EQ(sender.Message(), c.message);
    if (c.code == Code(2)) {
      EXPECT_THAT(traces.lines(), ElementsAre("pFileName=" + sender.file().string() + "\n"));
    }
  }
  EXPECT_THAT(server.requests(), IsEmpty());

  CNetUploadFile upload;
  EXPECT_FALSE(upload.UploadWholeFile(upload.GetRequest()));
  EXPECT_EQ(upload.GetErrorCode(), Code(6));
  EXPECT_EQ(upload.CheckContentLength(upload.GetRequest()), -1);
  EXPECT_FALSE(upload.Authenticate(upload.GetRequest()));
}

TEST(NetUploadFile, AFileThatShrinksMeanwhileFails) {
  constexpr std::uintmax_t kSize = 4 << 20;
  struct Cut {
    std::filesystem::path file;
    std::uintmax_t left;
    std::error_code error;
  };
  const auto cutOff = [](void* context, ULONG, ULONG) {
    Cut& cut = *static_cast<Cut*>(context);
    std::filesystem::resize_file(cut.file, cut.left, cut.error);
    return true;
  };
  for (const std::uintmax_t left : {std::uintmax_t{0}, kSize - 10}) {
    LoopbackServer server({ReplyOk()});
    Sender sender(server.host(), std::size_t{kSize});
    Cut cut = {sender.file(), left, {}};
    sender.upload.SetProgress(cutOff, &cut);
    const bool windowsBarsIt = (sender.Send(), static_cast<bool>(cut.error));
    EXPECT_EQ(sender.upload.GetErrorCode(), windowsBarsIt ? 0 : Code(1006)) << left;
    if (!windowsBarsIt) {
      EXPECT_THAT(server.requests(), Each(Not(HasSubstr("--BOUNDARY--"))));
    }

    WriteBytes(sender.file(), std::string(kSize, 'x'));
    const auto cutOffThenTake = [](void* context, const void*, std::size_t) {
      Cut& cut = *static_cast<Cut*>(context);
      std::filesystem::resize_file(cut.file, cut.left, cut.error);
      return true;
    };
    EXPECT_EQ(sender.upload.ShowRequest(cutOffThenTake, &cut), windowsBarsIt) << left;
  }
}

TEST(NetUploadFile, ReportsProgressAndCanBeCancelled) {
  struct Progress {
    ULONG limit, sent, total;
    bool rises;
  };
  const auto note = [](void* context, ULONG sent, ULONG total) {
    Progress& p = *static_cast<Progress*>(context);
    p = {p.limit, sent, total, p.rises && sent > p.sent};
    return sent < p.limit;
  };
  for (const bool cancel : {false, true}) {
    LoopbackServer server({ReplyOk()});
    Sender sender(server.host(), std::size_t{2000000});
    Progress progress = {cancel ? 1000000u : 9000000u, 0, 0, true};
    sender.upload.SetProgress(note, &progress);
    EXPECT_EQ(sender.Send(), cancel ? Code(12017) : 0);
    EXPECT_TRUE(progress.rises);
    EXPECT_EQ(progress.sent == progress.total, !cancel);
  }
}

TEST(NetUploadFile, ARedirectedPostBecomesAGetWithoutBody) {
  for (const char* status : {"301", "302", "303"}) {
    LoopbackServer other({ReplyOk("new")});
    LoopbackServer server(
        {Reply(std::string("HTTP/1.0 ") + status +
               " Elsewhere\r\nLocation: /other\r\nContent-Length: 3\r\n\r\nold"),
         Reply("HTTP/1.0 307 On\r\nLocation: http://" + other.host() + "/new?a#b\r\n\r\n")});
    Sender sender(server.host());
    EXPECT_EQ(sender.Send(), 0);
    EXPECT_EQ(sender.Response(), "new");
    EXPECT_TRUE(sender.upload.WasRedirected());
    EXPECT_THAT(server.requests()[1],
                AllOf(StartsWith("GET /other HTTP/1.0\r\n"), HasSubstr("Accept: */*\r\n"),
                      HasSubstr("Host: " + server.host() + "\r\n"), EndsWith("\r\n\r\n"),
                      Not(HasSubstr("Content-"))));
    EXPECT_THAT(other.requests()[0], StartsWith("GET /new?a HTTP/1.0\r\n"));
  }
}

TEST(NetUploadFile, ARequestThatIsToBeRepeatedIsSentAgain) {
  LoopbackServer server(
      {Reply("HTTP/1.0 307 Again\r\nLocation: /other\r\nContent-Length: 0\r\n\r\n"), ReplyOk()});
  Sender sender(server.host(), std::size_t{1000000});
  EXPECT_EQ(sender.Send(), 0);
  EXPECT_FALSE(sender.upload.WasRedirected());
  EXPECT_THAT(server.requests()[1], StartsWith("POST /other HTTP/1.0\r\n"));
  EXPECT_EQ(BodyOf(server.requests()[1]), BodyOf(server.requests()[0]));
}

TEST(NetUploadFile, AServerThatAsksForEverIsGivenUp) {
  const struct {
    const char* reply;
    unsigned error;
  } cases[] = {
      {"302 Elsewhere\r\nLocation: /upload", 12156},
      {"307 Again\r\nLocation: /upload", 12156},
      {"401 Who\r\nWWW-Authenticate: Digest realm=x, nonce=y, stale=true", 12014},
  };
  for (const auto& c : cases) {
    if (RunsOnWine() && c.error == 12014) continue;  // Wine does not answer
    LoopbackServer server(
        {Reply(std::string("HTTP/1.0 ") + c.reply + "\r\nContent-Length: 0\r\n\r\n")});
    Sender sender(server.host());
    sender.upload.SetUserName(W("joe"));
    sender.upload.SetPassword(W("secret"));
    EXPECT_EQ(sender.Send(), Code(c.error)) << c.reply;
    EXPECT_THAT(server.requests().size(), testing::AllOf(testing::Ge(6u), testing::Le(11u)));
  }
}

TEST(NetUploadFile, CredentialsAreSentWhenTheServerAsks) {
  if (RunsOnWine()) GTEST_SKIP() << "does not answer";
  for (const bool goes : {false, true}) {
    LoopbackServer server({[&](Peer& peer) {
                             Reply("HTTP/1.1 401 Who\r\nWWW-Authenticate: Basic realm=\"x\"\r\n" +
                                   std::string(goes ? "" : "Connection: close\r\n") +
                                   "Content-Length: 3\r\n\r\nwho")(peer);
                             if (goes) peer.ReadBytes(peer.received().size() + 100);
                           },
                           ReplyOk("welcome")});
    Sender sender(server.host(), std::size_t{100000});
    sender.upload.SetUserName(W("joe"));
    sender.upload.SetPassword(W("secret"));
    ASSERT_EQ(sender.Send(), 0) << goes;
    EXPECT_EQ(sender.Response(), "welcome");
    EXPECT_THAT(server.requests()[0].substr(0, 500), Not(HasSubstr("Authorization")));
    EXPECT_THAT(server.requests()[1], HasSubstr("Authorization: Basic am9lOnNlY3JldA==\r\n"));
    EXPECT_THAT(server.requests()[0], HasSubstr(BodyOf(server.requests()[1])));
  }
}

TEST(NetUploadFile, ANamedProxyGetsTheWholeAddress) {
  LoopbackServer server({ReplyOk()});
  Sender sender("far.example:8080");
  sender.upload.SetProxy(W(server.host()));
  EXPECT_EQ(sender.Send(), 0);
  EXPECT_THAT(server.requests()[0],
              AllOf(StartsWith("POST http://far.example:8080/upload HTTP/1.0\r\n"),
                    HasSubstr("Host: far.example:8080\r\n")));
}

TEST(NetUploadFile, ShowsTheVeryBytesThatItSends) {
  LoopbackServer server({ReplyOk()});
  Sender sender(server.host(), std::size_t{600000});
  sender.upload.AddParameter(W("a"), W("b"));
  EXPECT_EQ(sender.Send(), 0);
  std::string shown;
  EXPECT_TRUE(sender.upload.ShowRequest(
      [](void* context, const void* bytes, std::size_t size) {
        static_cast<std::string*>(context)->append(static_cast<const char*>(bytes), size);
        return true;
      },
      &shown));
  EXPECT_TRUE(shown == server.requests()[0]);
}

TEST(NetUploadFile, TheStepsOfAnUploadWorkOnAnyOpenRequest) {
  LoopbackServer server({ReplyOk("who are you"), ReplyOk("stored")});
  Sender sender(server.host());
  CNetUploadFile& upload = sender.upload;
  upload.SetLocalFile(W(sender.file()));
  ASSERT_EQ(upload.OpenSessionConnection(), 0);
  Traces traces;
  EXPECT_TRUE(upload.Authenticate(upload.GetRequest()));
  EXPECT_TRUE(upload.UploadWholeFile(upload.GetRequest()));
  EXPECT_EQ(upload.CheckContentLength(upload.GetRequest()), 6);
  EXPECT_EQ(upload.ReadServerResponse(upload.GetRequest()), 6);
  EXPECT_THAT(traces.lines(),
              ElementsAre("Data=who are you\n", StartsWith("pFileName="), "--CONTENT_LENGTH=6\n"));
  EXPECT_THAT(server.requests()[0], HasSubstr("Content-Length: 0\r\n"));
}

TEST(NetUploadFile, AReplyWithoutLengthAndAnAccessDeniedAreTold) {
  LoopbackServer server({Reply("HTTP/1.0 401 No\r\n\r\nno")});
  Sender sender(server.host());
  ASSERT_EQ(sender.upload.OpenSessionConnection(), 0);
  void* const request = sender.upload.GetRequest();
  EXPECT_FALSE(sender.upload.Authenticate(request));
  EXPECT_EQ(sender.Message(), "Authentication Failed");
  Traces traces;
  EXPECT_EQ(sender.upload.CheckContentLength(request), -1);
  EXPECT_THAT(traces.lines(), ElementsAre("!! CONTENT_LENGTH=0X00002F76\n"));
}

TEST(NetUploadFile, NothingIsSentWithoutAFieldThatMemoryRanOutFor) {
  bool failed = true;
  for (int successes = 0; failed; ++successes) {
    LoopbackServer server({ReplyOk()});
    Sender sender(server.host());
    const Wide name = W("a"), value = W("b");
    {
      const FailingMemory memory(successes);
      sender.upload.AddParameter(name, value);
      failed = memory.Failed();
    }
    EXPECT_EQ(sender.Send(), failed ? Code(8) : 0) << successes;
  }
  if (!kSystemStringsFail) return;
  Sender sender("a.example");
  const Wide file = W(sender.file());
  {
    const FailingMemory memory(0);
    EXPECT_FALSE(sender.upload.UploadFile(file)) << "nor the file before this one";
  }
  EXPECT_EQ(sender.upload.GetErrorCode(), Code(8));
}

TEST(NetUploadFile, LendsTheBytesOfItsFile) {
  Sender sender("a.example");
  sender.upload.SetLocalFile(W(sender.file()));
  const long before = LiveAllocations();
  void *file = nullptr, *mapping = nullptr;
  ULONG size = 0;
  const void* const data = sender.upload.get_data(file, mapping, size);
  EXPECT_EQ(std::string_view(static_cast<const char*>(data), size), "0123");
  sender.upload.release_data(file, mapping);
  EXPECT_EQ(LiveAllocations(), before);
}

TEST(NetUploadFile, MemoryThatRunsOutIsAFailureAndLosesNothing) {
  const Sender sender("a.example");
  const Wide file = W(sender.file()), host = W("a.example");
  const auto ignore = [](void*, const void*, std::size_t) { return true; };
  AtEachFailure(
      [&]() -> CNetUploadFile* {
        std::unique_ptr<CNetUploadFile> upload(new (std::nothrow) CNetUploadFile);
        if (!upload) return nullptr;
        upload->SetHost(host);
        upload->SetLocalFile(file);
        upload->AddParameter(host, host);
        const bool shown = upload->ShowRequest(ignore, nullptr);
        EXPECT_EQ(upload->GetErrorCode(), shown ? 0 : Code(8));
        return shown ? upload.release() : nullptr;
      },
      [](CNetUploadFile* upload, bool failed) {
        EXPECT_TRUE(upload || failed);
        delete upload;
      });
}

}  // namespace vosmere::test::http_upload
