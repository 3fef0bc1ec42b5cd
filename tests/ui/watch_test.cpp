// The watch over the connection: it comes back by itself after a cut, and gives up after five tries. The 30 seconds
// between two looks are shortened.
#include <QTimer>

#include "platform/qt/native_window.h"
#include "support/loopback.h"
#include "ui/window_fixture.h"

namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

class Watch : public WindowTest {
 protected:
  static constexpr unsigned kShortMs = 60;
  Watch() : former(MainDialog::uWatchMs) { MainDialog::uWatchMs = kShortMs; }
  ~Watch() override { MainDialog::uWatchMs = former; }

  void WaitUntilArmed() {
    EXPECT_TRUE(ui::WaitUntil([&] { return Main().remotePane.bReconnectArmed; }));
  }
  int Port() const { return std::stoi(server->Address().substr(server->Address().find(':') + 1)); }

 private:
  const unsigned former;
};

TEST_F(Watch, ReconnectsAfterTheSessionWasCut) {
  StartConnected({"資料/a.txt"});
  Open(kRemoteList, "資料");
  WaitUntilArmed();
  Main().remotePane.Ftp.CloseSocket();
  EXPECT_TRUE(ui::WaitUntil([&] { return history.Count("サイトに再接続中（現在：1、全体：5）") == 1; }));
  EXPECT_TRUE(ui::WaitUntil([&] { return Main().remotePane.bConnected && !ui::ModalWindow(); }));
  EXPECT_THAT(Messages(), Contains("サーバーの接続がタイムアウトしました。"));
  EXPECT_THAT(StatusBar(), HasSubstr("接続中"));
  // The count begins anew with the next loss.
  WaitUntilArmed();
  ui::Pump(3 * kShortMs);
  Main().remotePane.Ftp.CloseSocket();
  EXPECT_TRUE(ui::WaitUntil([&] { return history.Count("サイトに再接続中（現在：1、全体：5）") == 2; }));
  EXPECT_TRUE(ui::WaitUntil([&] { return Main().remotePane.bConnected && !ui::ModalWindow(); }));
}

TEST_F(Watch, ALossBeforeTheFirstLookCausesNoTry) {
  MainDialog::uWatchMs = 100000;
  StartConnected();
  Main().remotePane.Ftp.CloseSocket();
  Main().EvTimer(MainDialog::kTimerWatch);
  EXPECT_FALSE(Main().remotePane.bConnected);
  EXPECT_THAT(Messages(), Not(Contains(HasSubstr("サイトに再接続中"))));
  EXPECT_FALSE(Main().IsTimerSet(MainDialog::kTimerWatch));
}

TEST_F(Watch, GivesUpAfterFiveTries) {
  StartConnected();
  WaitUntilArmed();
  auto port = static_cast<uint16_t>(Port());
  gFtpTimeouts.replyMs = 500;  // Each new try leaves the half-open session before it.
  server->Stop();
  const int deaf = OpenLoopbackSocket(port, 16);  // Its connections are taken by the system and never answered.
  // The user cancels each try. The tries run inside the wait.
  int cancelled = 0;
  QTimer user;
  QObject::connect(&user, &QTimer::timeout, &user, [&] {
    platform::Window* dialog = Dialog("FTP接続");
    if (dialog && platform::ControlIsEnabled(dialog, kCommandCancel) && ui::Press(dialog, kCommandCancel)) ++cancelled;
  });
  user.start(20);
  EXPECT_TRUE(ui::WaitUntil([&] { return cancelled == 5 && !ui::ModalWindow(); }, 60000));
  ui::Pump(6 * kShortMs);
  EXPECT_EQ(history.Count("サイトに再接続中（現在：5、全体：5）"), 1u);
  // The last one arms the watch once more, which then finds that it has tried enough.
  EXPECT_EQ(history.Count("以下のサイトに再接続開始まで10秒。"), 5u);
  EXPECT_FALSE(Main().IsTimerSet(MainDialog::kTimerWatch)) << "silence";
  EXPECT_EQ(cancelled, 5);
  EXPECT_THAT(Messages(), Not(Contains(HasSubstr("現在：6"))));
  close(deaf);
}

TEST_F(Watch, NeverLooksWhileAJobHasTheSession) {
  StartConnected({"a.txt"});
  WaitUntilArmed();
  const struct {
    const char* dialog;
    int command;
    const char* question;
    const char* answer;
  } jobs[] = {
      {"ディレクトリを比較中", kCommandCompare, nullptr, nullptr},
      {"同期中", kCommandSynchronise, "同期します。よろしいですか？", "同期する"},
      {"ファイル一覧をダウンロード中", kCommandDownload, "上書きしますか？", "スキップ"},
      {"削除中", kCommandMenuRemoteDelete, "削除", "削除"},
  };
  for (const auto& job : jobs) {
    SCOPED_TRACE(job.dialog);
    Select(kRemoteList, {"a.txt"});
    if (job.question) alerts.Expect(job.question, job.answer);
    EXPECT_TRUE(ui::WaitUntil([&] { return Main().IsTimerSet(MainDialog::kTimerWatch); }));
    bool wasSet = false;
    const Meanwhile look([&] { return Dialog(job.dialog) != nullptr; },
                         [&] { wasSet = Main().IsTimerSet(MainDialog::kTimerWatch); });
    Main().Command(job.command, 0);
    EXPECT_TRUE(look.Acted());
    EXPECT_FALSE(wasSet);
    EXPECT_TRUE(Main().IsTimerSet(MainDialog::kTimerWatch)) << "afterwards";
  }
}

/// Keys come also where the button is off.
TEST_F(Watch, NoCommandConnectsByItself) {
  StartConnected({"folder/a.txt"});
  Open(kRemoteList, "folder");
  Select(kRemoteList, {"a.txt"});
  Main().CmDisconnect(true);
  const size_t commands = history.Commands().size();
  for (const int command :
       {kCommandRemoteUp, kCommandRemoteBack, kCommandRemoteForward, kCommandRemoteOpen, kCommandPermissions,
        kCommandCompare, kCommandUpload, kCommandDownload, kCommandLocalFocusLost}) {
    Main().Command(command, 0);
    EXPECT_FALSE(Main().remotePane.bConnected) << command;
    EXPECT_EQ(PathOf(kRemotePath), "") << command << ": the next connection would begin there";
  }
  EXPECT_EQ(history.Commands().size(), commands);
}

}  // namespace
