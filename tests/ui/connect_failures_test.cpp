// Servers that cannot be reached or trusted: what the history says, and that nothing is left half done.
#include <cstdio>

#include "support/scripted_server.h"
#include "support/test_authority_files.h"
#include "support/window/menus.h"
#include "ui/transfer_fixture.h"

namespace {

using testing::Contains;
using testing::HasSubstr;

class ConnectFailures : public TransferTest {
 protected:
  /// Starts on that server, cancels the question for a password, and gives what the start changed in the
  /// store.
  void StartRefused(const std::string& address, const char* alert, bool tls = false) {
    alerts.Expect(alert, "続行");
    KeepSite(address, PaneServer::Password(), tls);
    const Texts kept = Sites();
    OpenProgram();
    const auto cancel = InLogin([](platform::Window* dialog) { ui::Press(dialog, kCommandCancel); });
    ASSERT_TRUE(WaitForTheStart(30000));
    EXPECT_TRUE(cancel->Acted());
    EXPECT_FALSE(Main().remotePane.bConnected);
    EXPECT_EQ(Sites(), kept);
    for (const char* key : {"Current", "CurrentServer", "CurrentUser"}) EXPECT_EQ(Setting(key), kAbsent) << key;
    EXPECT_EQ(LMainMenu::uRefCount, 0u);
  }
  /// What is kept of the sites.
  static Texts Sites() {
    Texts all = All();
    std::erase_if(all, [](const std::string& one) { return one.rfind("FTPAccounts/", 0) != 0; });
    return all;
  }
  /// A good site is chosen from the connect menu and comes up.
  void ExpectAnotherSiteConnects() {
    MakeRemote("ok.txt", "x");
    PaneServer good(Remote());
    // The same site, put right.
    LUserSettingDeleteSection(kAccountsSection);
    KeepSite(good.Address());
    ui::ChooseFromNextMenu(kSite);
    PressTool(platform::kMainToolBar, kCommandConnect);
    EXPECT_TRUE(ui::WaitUntil([&] { return Main().remotePane.bConnected && !ui::ModalWindow(); }));
    EXPECT_THAT(Names(kRemoteList), Contains("ok.txt"));
    CloseProgram();
  }
};

TEST_F(ConnectFailures, NothingListensThere) {
  const std::string gone = ScriptedServer().Address();
  StartRefused(gone, "サーバーにログインできません。");
  EXPECT_THAT(Messages(), Contains("サーバ127.0.0.1（ポート" + gone.substr(gone.find(':') + 1) +
                                   "）に接続できませんでした。正しいサーバーアドレスとポートが入力されている"
                                   "ことを確認してください。"));
  EXPECT_EQ(Messages().back(), "接続ボタンをクリックしてサイトに接続する");
  ExpectAnotherSiteConnects();
}

TEST_F(ConnectFailures, TheNameDoesNotResolve) {
  StartRefused("no-such-host.invalid", "サーバーに接続できません");
  EXPECT_THAT(Messages(), Contains("サーバーに接続しています：no-such-host.invalid"));
  ExpectAnotherSiteConnects();
}

TEST_F(ConnectFailures, TheCertificateDoesNotVerify) {
  server = std::make_unique<PaneServer>(Remote(), UnknownCertificate().both);
  ASSERT_TRUE(server->IsRunning());
  StartRefused(server->Address(), "サーバーにログインできません。", true);
  EXPECT_THAT(Messages(), Contains(HasSubstr("でSSL/TSLを使うことができません。")));
  EXPECT_THAT(history.Lines(), testing::Not(Contains(HasSubstr("USER")))) << "the user's name went out in the clear";
  ExpectAnotherSiteConnects();
}

TEST_F(ConnectFailures, ATrustedCertificateConnects) {
  MakeRemote("a.txt", "x");
  Serve(PaneServer::Password(), TrustedCertificate().both);
  StartProgram();
  EXPECT_TRUE(Main().remotePane.bConnected);
  EXPECT_THAT(Names(kRemoteList), Contains("a.txt"));
}

TEST_F(ConnectFailures, CancelWhileTheServerKeepsSilence) {
  ScriptedServer silent;
  silent.Accept().Silence();
  silent.Expect("QUIT").Reply("221 Bye");  // The next connection leaves the half-open one first.
  KeepSite(silent.Address());
  OpenProgram();
  QElapsedTimer asked;
  asked.start();
  const qint64 took = CancelDuring(
      "FTP接続", [] { WaitForTheStart(60000); }, [&](platform::Window*) { return asked.elapsed() > 300; });
  printf("a silent logon ended %lld ms after Cancel\n", static_cast<long long>(took));
  EXPECT_LT(took, kCancelLimitMs);
  EXPECT_FALSE(Main().remotePane.bConnected);
  EXPECT_EQ(Messages().back(), "接続ボタンをクリックしてサイトに接続する");
  ExpectAnotherSiteConnects();
}

TEST_F(ConnectFailures, ALostServerIsMetByTheNextCommand) {
  StartConnected({"a.txt"});
  server->Stop();
  PressTool(kRemoteTools, kCommandRemoteRefresh);
  EXPECT_FALSE(Main().remotePane.bConnected);
  EXPECT_THAT(Messages(), Contains("サーバーの接続がタイムアウトしました。"));
  EXPECT_THAT(StatusBar(), HasSubstr("FTPサイトに接続されていません"));
  EXPECT_FALSE(IsEnabled(kRemotePath));
}

}  // namespace
