#include "wire/logon_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class Logon : public LogonTest {};
WIRE_SUITE(Logon);

TEST_P(Logon, SendsUserAndPassword) {
  server.Greet("220 Ready");
  server.Expect("USER anna").Reply("331 Password please");
  server.Expect("PASS secret").ReplyLines({"230-Welcome", "230 In"});
  session.uCapabilities = 0xFFFFFFFFu;
  EXPECT_EQ(LogOn(), LProcessResultOk);
  EXPECT_EQ(session.uCapabilities, 0u) << "What a former server could do is forgotten";
  EXPECT_TRUE(session.IsValid());
  EXPECT_FALSE(session.IsSecure());
  EXPECT_THAT(history.Lines(), ElementsAre("応答:  220 Ready", "コマンド: USER anna", "応答:  331 Password please",
                                           "コマンド: ******", "応答:  230 In"));
  EXPECT_THAT(process.Errors(), IsEmpty());
}

TEST_P(Logon, TakesAGreetingFrom200To399) {
  for (const char* greeting : {"200 hello", "399 hello"}) {
    server.Greet(greeting);
    server.Expect("USER anna").Reply("230 In");
    EXPECT_EQ(LogOn(), LProcessResultOk) << greeting;
  }
  for (const char* greeting : {"199 x", "400 x", "hello"}) {
    const HistoryFile messages;
    server.Greet(greeting);
    EXPECT_EQ(LogOn(), LProcessResultFailed) << greeting;
    EXPECT_THAT(messages.Messages(), ElementsAre(MessageToCheckAddress("サーバー", "からの応答が不良です。")));
  }
}

TEST_P(Logon, TellsOfAServerThatCannotBeReachedOrSaysNothing) {
  const int port = ScriptedServer().Port();  // Gone again.
  for (const std::string& address : {"127.0.0.1:" + std::to_string(port), std::string("255.255.255.255:21")}) {
    EXPECT_EQ(LogOnTo(address), LProcessResultFailed);
    EXPECT_EQ(history.Messages().back(),
              "サーバ" + PeerInHistory(address) +
                  "に接続できませんでした。正しいサーバーアドレスとポートが入力されていることを確認してください。");
  }
  const HistoryFile messages;
  gFtpTimeouts.greetingMs = kShortMs;
  server.Accept().Silence();
  EXPECT_EQ(LogOn(), LProcessResultFailed);
  server.Accept().Raw("220-Wel").Delay(50).Reset();
  EXPECT_EQ(LogOn(), LProcessResultFailed);
  const std::string message = MessageToCheckAddress("サーバー", "からの応答がありません。");
  EXPECT_THAT(messages.Messages(), ElementsAre(message, message));
}

struct AnswerRow {
  const char* name;
  const char* toUser;
  const char* toPassword;  ///< Null where no password is to be sent.
  LProcessResult result;
  std::vector<std::string> messages;
};

TEST_P(Logon, GoesByTheAnswersToUserAndPassword) {
  const AnswerRow rows[] = {
      {"no password wanted", "230 In", nullptr, LProcessResultOk, {}},
      {"user refused", "530 No", nullptr, LProcessResultFailed, {kLogonRefused}},
      {"user not understood", "500 What", "230 In", LProcessResultOk, {}},
      {"another success", "232 In", "202 Superfluous", LProcessResultOk, {}},
      {"account wanted", "331 Please", "332 Account", LProcessResultOk, {}},
      {"password refused", "331 Please", "530 No", LProcessResultFailed, {kLogonRefused}},
      {"password not understood",
       "331 Please",
       "500 What",
       LProcessResultFailed,
       {"Reply Gave Unexpected Response: 500"}},
      {"free text", "hello", "421 Bye", LProcessResultFailed, {"Reply Gave Unexpected Response: 421"}},
  };
  for (const AnswerRow& row : rows) {
    SCOPED_TRACE(row.name);
    const HistoryFile messages;
    server.Greet("220 Ready");
    server.Expect("USER anna").Reply(row.toUser);
    if (row.toPassword) server.Expect("PASS secret").Reply(row.toPassword);
    EXPECT_EQ(LogOn(), row.result);
    EXPECT_EQ(messages.Messages(), row.messages);
  }
}

TEST_P(Logon, TellsOfMissingAnswers) {
  const std::string noReply = Message("サーバー", "からの応答がありません。接続を確認してください。");
  server.Greet("220 Ready");
  server.Expect("USER anna").Close();
  EXPECT_EQ(LogOn(), LProcessResultFailed);
  gFtpTimeouts.replyMs = 2 * kShortMs;
  server.Greet("220 Ready");
  server.Expect("USER anna").Silence();
  EXPECT_EQ(LogOn(), LProcessResultFailed);
  EXPECT_THAT(history.Messages(), ElementsAre(noReply, noReply));
  server.Greet("220 Ready");
  server.Expect("USER anna").Reply("331 Please");
  server.Expect("PASS secret").Silence();
  EXPECT_EQ(LogOn(), LProcessResultFailed);
  EXPECT_EQ(history.Messages().size(), 2u);
}

/// Cut short it would name somebody else.
TEST_P(Logon, SendsAUserThatFitsAndNoLongerOne) {
  user = std::string(kTextSize - 1 - strlen("USER \r\n"), 'u');
  server.Greet("220 Ready");
  server.Expect("USER " + user).Reply("230 In");
  EXPECT_EQ(LogOn(), LProcessResultOk);
  user += 'u';
  server.Greet("220 Ready");
  EXPECT_EQ(LogOn(), LProcessResultFailed);
  EXPECT_THAT(history.Messages(), testing::Contains(kCommandTooLong));
}

TEST_P(Logon, SaysNothingWhenStopped) {
  LProcessResult result = LProcessResultFailed;
  for (int n = 1; result != LProcessResultOk && n < 100; ++n) {
    SCOPED_TRACE(n);
    const HistoryFile lines;
    ScriptedServer stopped;
    stopped.AllowUnusedSteps();
    stopped.Greet("220 Ready");
    stopped.Expect("USER anna").Reply("331 Please");
    stopped.Expect("PASS secret").Reply("230 In");
    RecordingInterface stopping(n);
    result = ProcessFtpLogOnServer(stopping, session, stopped.Address().c_str(), "anna", "secret", false, false);
    EXPECT_THAT(lines.Messages(), IsEmpty());
    if (result == LProcessResultOk) break;
    // A stop in the exchange of the password counts as a failure.
    const bool atPassword = !lines.Lines().empty() && lines.Lines().back() == "コマンド: ******";
    EXPECT_EQ(result, atPassword ? LProcessResultFailed : LProcessResultStopped);
  }
  EXPECT_EQ(result, LProcessResultOk);
}

TEST(ErrorReportAddress, NamesTheHostAndThePort) {
  const struct {
    const char* address;
    bool secure;
    bool implicit;
    const char* host;
    int port;
  } rows[] = {
      {"server", false, false, "server", 21},          {"server", true, false, "server", 21},
      {"server", false, true, "server", 21},           {"server", true, true, "server", 990},
      {"server:2121", true, true, "server", 2121},     {"server:", false, false, "server", 0},
      {"server:70000", false, false, "server", 70000}, {"a:b:7", false, false, "a", 0},
  };
  for (const auto& row : rows) {
    char host[kTextSize];
    int port = -1;
    GetErrorReportAddressAndPort(row.address, row.secure, row.implicit, host, port);
    EXPECT_STREQ(host, row.host) << row.address;
    EXPECT_EQ(port, row.port) << row.address;
  }
}

class ConnectProcess : public LogonTest {};
WIRE_SUITE(ConnectProcess);

TEST_P(ConnectProcess, ShowsItsStepsAndTellsWhichFailed) {
  const struct {
    const char* name;
    const char* reply;  ///< To the user; null where no server is reached.
    LProcessResult result;
    std::vector<std::string> errors;
    std::vector<double> progress;
  } rows[] = {
      {"good", "230 In", LProcessResultOk, {}, {0.1, 0.33, 0.66, 0.1}},
      {"refused", "530 No", LProcessResultFailed, {"サーバーにログインできません。"}, {0.1, 0.33, 0.66}},
      {"0.0.0.0:2121", nullptr, LProcessResultFailed, {"サーバーに接続できません"}, {0.1, 0.33}},
      {"", nullptr, LProcessResultFailed, {"サーバーに接続できません"}, {0.1, 0.33}},
      {"stopped", nullptr, LProcessResultStopped, {}, {0.1, 0.33, 0.66, 0.1}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const bool isStopped = row.result == LProcessResultStopped;
    RecordingInterface fresh(isStopped ? 1 : 0);
    if (row.reply) {
      server.Greet("220 Ready");
      server.Expect("USER anna").Reply(row.reply);
    }
    const std::string address = row.reply || isStopped ? server.Address() : row.name;
    LProcessSecureFtpConnect connect = {&session, address.c_str(), "anna", "secret", false, false};
    EXPECT_EQ(Process(fresh, connect), row.result);
    EXPECT_EQ(fresh.Errors(), row.errors);
    EXPECT_EQ(fresh.Progress(), row.progress);
    if (row.progress.size() > 2) {
      EXPECT_THAT(fresh.Statuses(), ElementsAre(Pair(0, "接続中..."), Pair(1, "接続中..."), Pair(1, "ログイン...")));
    }
  }
}

class ChangeDirectory : public WireTest {
 protected:
  LProcessResult Go(const char* to) {
    TextCopy(directory, to);
    LProcessSecureFtpChangeDirectory change = {&session, &directory};
    return Process(process, change);
  }

  char directory[kTextSize];
};
WIRE_SUITE(ChangeDirectory);

TEST_P(ChangeDirectory, GivesTheDirectoryThatTheServerTells) {
  Connect();
  server.Expect("CWD a b").Reply("250 ok");
  server.Expect("PWD").Reply("257 \"/x/a b\" is it");
  EXPECT_EQ(Go("a b"), LProcessResultOk);
  EXPECT_STREQ(directory, "/x/a b");
  EXPECT_THAT(process.Statuses(), ElementsAre(Pair(0, "a bへディレクトリを変更しています")));
  server.Expect("PWD").Reply("257 nothing in quotes");
  EXPECT_EQ(Go(""), LProcessResultOk);
  EXPECT_STREQ(directory, "");
  EXPECT_THAT(server.Commands(), ElementsAre("CWD a b", "PWD", "PWD"));
}

}  // namespace
