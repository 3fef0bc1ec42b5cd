#include <chrono>

#include "support/test_certificates.h"
#include "wire/logon_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class LogonTls : public LogonTest {
 protected:
  LogonTls() { server.UseTls(TestServerContext(TestCertificate::kGood)); }

  /// Each command with "tls" or "plain" in front.
  std::vector<std::string> SecuredCommands() const {
    std::vector<std::string> texts;
    for (const ScriptedServer::Command& command : server.CommandsWithSecurity()) {
      texts.push_back((command.tls ? "tls " : "plain ") + command.text);
    }
    return texts;
  }
  void ExpectUserAndPassword() {
    server.Expect("USER anna").Reply("331 Please");
    server.Expect("PASS secret").Reply("230 In");
  }
  /// A client comes, and what is given back is the server's side of its handshake.
  ScriptedServer::Step& ExpectHandshake(Security security) {
    if (security == kImplicit) return server.Accept();
    server.Greet("220 Ready");
    return server.Expect("AUTH TLS").Reply("234 Go");
  }
  std::string HandshakeFailed() const {
    return Message("サーバー", "でSSL/TSLを使うことができません。セキュリティ保護無しを試しています。");
  }
  std::string ExplicitFailed() const {
    return Message("サーバー", "で明示的SSL/TSLに失敗しました。黙示的なSSL/TSLまたは標準FTPをお試しください。");
  }
  std::string NoGreeting() const { return MessageToCheckAddress("サーバー", "からの応答がありません。"); }
};
WIRE_SUITE(LogonTls);

TEST_P(LogonTls, ExplicitSecuresTheConnectionBeforeTheName) {
  server.Greet("220 Ready");
  server.Expect("AUTH TLS").Reply("234 Go").StartTls();
  ExpectUserAndPassword();
  EXPECT_EQ(LogOn(kExplicit), LProcessResultOk);
  EXPECT_TRUE(session.IsSecure());
  EXPECT_THAT(SecuredCommands(), ElementsAre("plain AUTH TLS", "tls USER anna", "tls PASS secret"));
  EXPECT_THAT(history.Lines(),
              ElementsAre("応答:  220 Ready", "コマンド: AUTH TLS", "応答:  234 Go", "コマンド: USER anna",
                          "応答:  331 Please", "コマンド: ******", "応答:  230 In"));
  ExpectInStep();
}

TEST_P(LogonTls, ImplicitSecuresTheConnectionBeforeTheGreeting) {
  server.Accept().StartTls().ReplyLines({"220-Welcome", "220 Ready"});
  ExpectUserAndPassword();
  EXPECT_EQ(LogOn(kImplicit), LProcessResultOk);
  EXPECT_TRUE(session.IsSecure());
  EXPECT_THAT(SecuredCommands(), ElementsAre("tls USER anna", "tls PASS secret"));
  ExpectInStep();
}

TEST_P(LogonTls, ASecondLogonStartsInTheClearAgain) {
  for (int round = 0; round < 2; ++round) {
    ExpectHandshake(kExplicit).StartTls();
    server.Expect("USER anna").Reply("230 In");
    EXPECT_EQ(LogOn(kExplicit), LProcessResultOk);
  }
  server.Greet("220 Ready");
  server.Expect("USER anna").Reply("230 In");
  EXPECT_EQ(LogOn(kPlain), LProcessResultOk);
  EXPECT_FALSE(session.IsSecure());
}

struct LevelsOfLines : LLogPane {
  LevelsOfLines() { gLLog.SetPane(this); }
  ~LevelsOfLines() { gLLog.SetPane(nullptr); }
  void DisplayStatus(const char* /*time*/, const char* /*text*/, unsigned char level) override {
    levels.push_back(level);
  }
  std::vector<unsigned char> levels;
};

TEST_P(LogonTls, ExplicitGoesOnInTheClearWhenDeclined) {
  for (const char* reply : {"502 What", "500 What", "530 First log in", "334 x", "200 ok", "hello"}) {
    SCOPED_TRACE(reply);
    const HistoryFile lines;
    const LevelsOfLines levels;
    server.Greet("220 Ready");
    server.Expect("AUTH TLS").Reply(reply);
    ExpectUserAndPassword();
    EXPECT_EQ(LogOn(kExplicit), LProcessResultOk);
    EXPECT_FALSE(session.IsSecure());
    ASSERT_THAT(lines.Messages(), ElementsAre(Message("サーバー",
                                                      "は明示的SSL/TSLに対応していません。黙示的SSL/TSLまたは標準FTPを"
                                                      "お試しください。")));
    EXPECT_EQ(levels.levels[3], kLogWarning);
  }
}

TEST_P(LogonTls, ExplicitFailsWithoutAnAnswer) {
  server.Greet("220 Ready");
  server.Expect("AUTH TLS").Close();
  EXPECT_EQ(LogOn(kExplicit), LProcessResultFailed);
  gFtpTimeouts.replyMs = kShortMs;
  server.Greet("220 Ready");
  server.Expect("AUTH TLS").Silence();
  EXPECT_EQ(LogOn(kExplicit), LProcessResultFailed);
  EXPECT_THAT(history.Messages(), ElementsAre(ExplicitFailed(), ExplicitFailed()));
}

TEST_P(LogonTls, NoNameGoesToAServerThatCannotProveItself) {
  const TestCertificate bad[] = {
      TestCertificate::kNameOnly,     TestCertificate::kWrongName,     TestCertificate::kExpired,
      TestCertificate::kNotYetValid,  TestCertificate::kSelfSigned,    TestCertificate::kForClients,
      TestCertificate::kChainMissing, TestCertificate::kAddressAsName,
  };
  for (const TestCertificate certificate : bad) {
    SCOPED_TRACE(static_cast<int>(certificate));
    const HistoryFile messages;
    server.UseTls(TestServerContext(certificate));
    // Under TLS 1.3 the server is through before the client has looked at the certificate.
    ExpectHandshake(kExplicit).TryTls();
    EXPECT_EQ(LogOn(kExplicit), LProcessResultFailed);
    ExpectHandshake(kImplicit).TryTls().Reply("220 Ready");
    EXPECT_EQ(LogOn(kImplicit), LProcessResultFailed);
    EXPECT_THAT(messages.Messages(), ElementsAre(HandshakeFailed(), NoGreeting()));
  }
  EXPECT_THAT(SecuredCommands(), testing::Each("plain AUTH TLS"));
}

TEST_P(LogonTls, BytesBehindTheReplyAreNeverRepliesUnderTls) {
  // In one segment with the reply, so that they are there when it is read. Not even a handshake follows.
  server.UseOneByteSegments(false);
  for (const char* slipped : {"230 In\r\n", "331 x\r\n230 In\r\n", "x", "\x16\x03\x03"}) {
    SCOPED_TRACE(slipped);
    const HistoryFile messages;
    server.Greet("220 Ready");
    server.Expect("AUTH TLS").Raw(std::string("234 Go\r\n") + slipped);
    EXPECT_EQ(LogOn(kExplicit), LProcessResultFailed);
    EXPECT_THAT(messages.Messages(), ElementsAre(HandshakeFailed()));
  }
}

TEST_P(LogonTls, AHandshakeMayMeetGarbageOrTheEnd) {
  const struct {
    const char* name;
    void (*behaves)(ScriptedServer::Step&);
  } rows[] = {
      {"garbage", [](ScriptedServer::Step& step) { step.IgnoreInput().Delay(30).Raw("garbage, no handshake\r\n"); }},
      {"close", [](ScriptedServer::Step& step) { step.IgnoreInput().Delay(30).Close(); }},
      {"reset", [](ScriptedServer::Step& step) { step.IgnoreInput().Delay(30).Reset(); }},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const HistoryFile messages;
    row.behaves(server.Greet("220 Ready"));
    EXPECT_EQ(LogOn(kImplicit), LProcessResultFailed);
    row.behaves(ExpectHandshake(kExplicit));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(LogOn(kExplicit), LProcessResultFailed);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(kAmpleMs / 2)) << "the end is seen";
    EXPECT_THAT(messages.Messages(), ElementsAre(NoGreeting(), HandshakeFailed()));
  }
}

TEST_P(LogonTls, AHandshakeIsLimitedAndCanBeStopped) {
  gFtpTimeouts.logonHandshakeMs = kShortMs;
  gFtpTimeouts.greetingMs = kShortMs;
  ExpectHandshake(kImplicit).IgnoreInput();
  EXPECT_EQ(LogOn(kImplicit), LProcessResultFailed);
  gFtpTimeouts.greetingMs = kAmpleMs;
  ExpectHandshake(kExplicit).IgnoreInput();
  EXPECT_EQ(LogOn(kExplicit), LProcessResultFailed);
  EXPECT_THAT(history.Messages(), ElementsAre(NoGreeting(), HandshakeFailed()));

  gFtpTimeouts.logonHandshakeMs = kAmpleMs;
  for (const Security security : {kImplicit, kExplicit}) {
    const HistoryFile messages;
    ExpectHandshake(security).IgnoreInput();
    process.StopAt(0);
    process.OnQuestion([this] {
      if (session.IsSecure()) process.StopNow();
    });
    EXPECT_EQ(LogOn(security), LProcessResultStopped);
    EXPECT_THAT(messages.Messages(), IsEmpty());
  }
}

TEST_P(LogonTls, ThroughAProxyIsImplicitOnly) {
  UseProxy(server.Address(), "pia", "proxypass", kFtpProxySite);
  server.Accept().StartTls().Reply("220 Proxy");
  server.Expect("USER pia").Reply("331 Please");
  server.Expect("PASS proxypass").Reply("230 In");
  server.Expect("SITE ftp.example").Reply("220 Ready");
  ExpectUserAndPassword();
  EXPECT_EQ(LogOnTo("ftp.example", kImplicit), LProcessResultOk);
  EXPECT_THAT(SecuredCommands(), testing::Each(testing::StartsWith("tls ")));

  server.UseTls(TestServerContext(TestCertificate::kWrongName));
  server.Accept().TryTls().Reply("220 Proxy");
  EXPECT_EQ(LogOnTo("ftp.example", kImplicit), LProcessResultFailed);
  EXPECT_THAT(history.Messages(), ElementsAre(MessageToCheckAddress("サーバー", "の応答がありません。")));
}

}  // namespace
