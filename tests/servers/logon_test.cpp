// Getting in, and being kept out.
#include "servers/server_fixture.h"

namespace {

class ServerLogon : public ServerTest {};

TEST_P(ServerLogon, LogsOn) {
  LogOn();
  EXPECT_EQ(GetParam().security != ServerSecurity::kPlain, session.IsSecure());
  char directory[kTextSize];
  ASSERT_TRUE(session.GetCurrentDirectory(directory));
  // The servers that change their root say "/".
  EXPECT_TRUE(directory == std::string("/") || directory == server.Folder()) << directory;
  EXPECT_FALSE(HistoryHas(RealServer::Password())) << "the history shows the password";
}

TEST_P(ServerLogon, LogsOnAgainOnTheSameSession) {
  LogOn();
  LogOn();
  EXPECT_TRUE(session.SetCurrentDirectory("."));
}

TEST_P(ServerLogon, WrongPassword) {
  EXPECT_EQ(LProcessResultFailed, LogOnWith("wrong-word"));
  EXPECT_TRUE(HistoryHas("530"));
  EXPECT_FALSE(HistoryHas("wrong-word")) << "the history shows the password";
  LogOn();
}

SERVER_SUITE(ServerLogon);

/// Servers that show a certificate of an authority that nobody trusts.
class UnknownServer : public ServerTest {};

TEST_P(UnknownServer, IsToldNothing) {
  EXPECT_EQ(LProcessResultFailed, LogOnWith(RealServer::Password()));
  const bool isExplicit = GetParam().security == ServerSecurity::kExplicitTls;
  const std::string message =
      "サーバー" + PeerInHistory(server.Address()) +
      (isExplicit ? "でSSL/TSLを使うことができません。セキュリティ保護無しを試しています。"
                  : "からの応答がありません。正しいサーバーアドレスとポートが入力されていることを確認してください。");
  EXPECT_TRUE(HistoryHas(message)) << message;
  EXPECT_FALSE(HistoryHas("USER"));
}

INSTANTIATE_TEST_SUITE_P(Each, UnknownServer, testing::ValuesIn([] {
                           std::vector<ServerSetup> secure = OfferedServersThat(
                               [](const ServerSetup& setup) { return setup.security != ServerSecurity::kPlain; });
                           for (ServerSetup& setup : secure) setup.certificate = ServerCertificate::kUnknownAuthority;
                           return secure;
                         }()),
                         NameOfParameter);

}  // namespace
