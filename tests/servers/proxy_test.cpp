// A whole session through a proxy of another maker's, to each server that it can reach: the proxy knows no TLS.
#include "ftp/dir_iterator.h"
#include "ftp/proxy_settings.h"
#include "ftp/transfer.h"
#include "servers/server_fixture.h"

namespace {

class ServerBehindProxy : public ServerTest {
 protected:
  void SetUp() override {
    ServerTest::SetUp();
    ASSERT_TRUE(proxy.IsRunning()) << proxy.Log();
    LNetSetFtpProxySettings(proxy.Address().c_str(), "", "", kFtpProxyUserAtSite);
  }
  void TearDown() override {
    LNetSetFtpProxySettings("", "", "", kFtpProxyNone);
    ServerTest::TearDown();
    if (HasFailure()) printf("%s\n", proxy.Log().c_str());
  }

  RealProxy proxy;
};

TEST_P(ServerBehindProxy, IsListedReadAndWritten) {
  PutRemote("日本語 ファイル", "from the server");
  LogOn();
  EXPECT_TRUE(HistoryHas("USER " + std::string(server.User()) + "@" + server.Address()));
  LFileTransferProtocol::DirIteratorAllFiles iterator(process, session);
  ASSERT_TRUE(iterator.IsLoaded());
  bool isListed = false;
  for (; iterator.Current(); iterator.Next()) isListed |= iterator.Name() == std::string("日本語 ファイル");
  EXPECT_TRUE(isListed);
  const std::string to = local.Path("to");
  ASSERT_EQ(LProcessResultOk, ProcessFtpDownload(process, session, "日本語 ファイル", to.c_str(), nullptr));
  EXPECT_EQ("from the server", local.Read("to"));
  const std::string content(300000, 'y');
  const std::string from = local.Write("from", content);
  ASSERT_EQ(LProcessResultOk, ProcessFtpUpload(process, session, "up", from.c_str(), nullptr, false));
  EXPECT_TRUE(content == GetRemote("up"));
}

TEST_P(ServerBehindProxy, IsKeptShutByAWrongPassword) {
  EXPECT_EQ(LProcessResultFailed, LogOnWith("wrong-word"));
  EXPECT_FALSE(HistoryHas("wrong-word"));
}

SERVER_SUITE_THAT(ServerBehindProxy, [](const ServerSetup& setup) { return setup.security == ServerSecurity::kPlain; });

}  // namespace
