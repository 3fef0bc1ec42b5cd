#include "sites/store/settings.h"
#include "wire/logon_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kServer[] = "ftp.example:2121";

class LogonProxy : public LogonTest {
 protected:
  void Use(int type) { UseProxy(server.Address(), proxy_user, proxy_password, type); }
  LProcessResult LogOnThroughProxy(Security security = kPlain) { return LogOnTo(kServer, security); }

  std::string proxy_user = "pia";
  std::string proxy_password = "proxypass";
};
WIRE_SUITE(LogonProxy);

TEST_P(LogonProxy, SettingsComeBackAsTheyWere) {
  UseProxy("proxy:8021", "pia", "パスワード", kFtpProxyLoginUserAtSite);
  char host[kTextSize], name[kTextSize], word[kTextSize];
  LFtpProxyType type;
  LNetGetFtpProxySettings(host, name, word, type);
  EXPECT_STREQ(host, "proxy:8021");
  EXPECT_STREQ(name, "pia");
  EXPECT_STREQ(word, "パスワード");
  EXPECT_EQ(type, 4);
  EXPECT_EQ(LUserSettingGet<int>("Settings", "FtpProxyType", 0), 4);
  EXPECT_TRUE(LUserSettingDeleteItem("Settings", "FtpProxyType"));
  LNetGetFtpProxySettings(host, name, word, type);
  EXPECT_EQ(type, kFtpProxyNone);
}

TEST_P(LogonProxy, OfNoTypeIsIgnored) {
  UseProxy("127.0.0.1:1", "pia", "x", kFtpProxyNone);
  server.Greet("220 Ready");
  server.Expect("USER anna").Reply("230 In");
  // Implicit TLS is a word on a site with TLS only.
  EXPECT_EQ(ProcessFtpLogOnServer(process, session, server.Address().c_str(), "anna", "secret", false, true),
            LProcessResultOk);
  EXPECT_FALSE(session.IsSecure());
}

struct OrderRow {
  int type;
  std::vector<std::pair<const char*, const char*>> exchanges;  ///< Command and reply.
};

TEST_P(LogonProxy, OfEachTypeHasItsOrderOfCommands) {
  const OrderRow rows[] = {
      {1,
       {{"USER pia", "331 Password"},
        {"PASS proxypass", "230 In"},
        {"SITE ftp.example:2121", "220 Ready"},
        {"USER anna", "331 Password"},
        {"PASS secret", "230 In"}}},
      {1, {{"USER pia", "230 In"}, {"SITE ftp.example:2121", "220 Ready"}, {"USER anna", "230 In"}}},
      {1, {{"USER pia", "230 In"}, {"SITE ftp.example:2121", "331 Password"}, {"PASS secret", "230 In"}}},
      {2, {{"OPEN ftp.example:2121", "220 Ready"}, {"USER anna", "331 Password"}, {"PASS secret", "230 In"}}},
      {3, {{"USER anna@ftp.example:2121", "331 Password"}, {"PASS secret", "230 In"}}},
      {3, {{"USER anna@ftp.example:2121", "220 Ready"}, {"USER anna", "331 Password"}, {"PASS secret", "230 In"}}},
      {4,
       {{"USER pia", "331 Password"},
        {"PASS proxypass", "230 In"},
        {"USER anna@ftp.example:2121", "331 Password"},
        {"PASS secret", "230 In"}}},
  };
  for (const OrderRow& row : rows) {
    // No proxy is asked for explicit TLS.
    for (const Security security : {kPlain, kExplicit}) {
      SCOPED_TRACE(testing::Message() << "type " << row.type << ", security " << security);
      Use(row.type);
      server.Greet("220 Proxy");
      for (const auto& [command, reply] : row.exchanges) server.Expect(command).Reply(reply);
      EXPECT_EQ(LogOnThroughProxy(security), LProcessResultOk);
      EXPECT_FALSE(session.IsSecure());
    }
  }
  EXPECT_THAT(history.Messages(), IsEmpty());
  for (const std::string& line : history.Lines()) EXPECT_EQ(line.find("proxypass"), std::string::npos);
}

TEST_P(LogonProxy, MustGreetWithExactly220) {
  Use(2);
  for (const char* greeting : {"219 x", "221 x", "hello"}) {
    const HistoryFile messages;
    server.Greet(greeting);
    EXPECT_EQ(LogOnThroughProxy(), LProcessResultFailed) << greeting;
    EXPECT_THAT(messages.Messages(), ElementsAre(MessageToCheckAddress("サーバー", "からの応答が不良です。")));
  }
}

TEST_P(LogonProxy, OfAnUnknownTypeFailsAfterTheGreeting) {
  for (const int type : {5, 99, -1}) {
    Use(type);
    server.Greet("220 Proxy");
    EXPECT_EQ(LogOnThroughProxy(), LProcessResultFailed);
  }
  EXPECT_THAT(server.Commands(), IsEmpty());
  EXPECT_THAT(history.Messages(), IsEmpty());
}

TEST_P(LogonProxy, TellsWhichProxyCannotBeReached) {
  UseProxy("255.255.255.255", "", "", kFtpProxyOpen);
  EXPECT_EQ(LogOnThroughProxy(kImplicit), LProcessResultFailed);
  EXPECT_THAT(history.Messages(),
              ElementsAre("サーバ255.255.255.255（ポート990）に接続できませんでした。正しいサーバーアドレスとポートが"
                          "入力されていることを確認してください。"));
  Use(2);
  gFtpTimeouts.greetingMs = kShortMs;
  server.Accept().Silence();
  EXPECT_EQ(LogOnThroughProxy(), LProcessResultFailed);
  EXPECT_EQ(history.Messages().back(), MessageToCheckAddress("サーバー", "の応答がありません。"));
}

struct FailureRow {
  const char* name;
  int type;
  std::vector<std::pair<const char*, const char*>> exchanges;  ///< A null reply is a closed connection.
  const char* before;  ///< The message around host and port; null where a refused logon is told.
  const char* after = "からの応答がありません。接続を確認してください。";
};

TEST_P(LogonProxy, TellsOfEachStepThatFails) {
  const char* const unknown = "からの応答が不明です。";
  const FailureRow rows[] = {
      {"no answer to the user", 1, {{"USER pia", nullptr}}, "ユーザー名に対してサーバー"},
      {"no answer to the password",
       4,
       {{"USER pia", "331 x"}, {"PASS proxypass", nullptr}},
       "パスワードに対してサーバー"},
      {"user refused", 1, {{"USER pia", "530 No"}}, nullptr},
      {"user not understood", 4, {{"USER pia", "500 What"}}, nullptr},
      {"password refused", 1, {{"USER pia", "331 x"}, {"PASS proxypass", "530 No"}}, nullptr},
      {"account wanted", 1, {{"USER pia", "331 x"}, {"PASS proxypass", "332 x"}}, nullptr},
      {"no answer to SITE", 1, {{"USER pia", "230 In"}, {"SITE ftp.example:2121", nullptr}}, "サーバー"},
      {"OPEN refused", 2, {{"OPEN ftp.example:2121", "421 No"}}, "サーバー", unknown},
      {"logged on at once", 3, {{"USER anna@ftp.example:2121", "230 In"}}, "サーバー", unknown},
      {"no answer of the server", 2, {{"OPEN ftp.example:2121", "220 x"}, {"USER anna", nullptr}}, "サーバー"},
  };
  for (const FailureRow& row : rows) {
    SCOPED_TRACE(row.name);
    const HistoryFile messages;
    Use(row.type);
    server.Greet("220 Proxy");
    for (const auto& [command, reply] : row.exchanges) {
      ScriptedServer::Step& step = server.Expect(command);
      reply ? step.Reply(reply) : step.Close();
    }
    EXPECT_EQ(LogOnThroughProxy(), LProcessResultFailed);
    const std::string expected = row.before ? Message(row.before, row.after) : kLogonRefused;
    EXPECT_THAT(messages.Messages(), ElementsAre(expected));
  }
}

}  // namespace
