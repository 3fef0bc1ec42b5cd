// The end of the program, asked for at the worst moments. Each of these once hung or touched what was gone.
#include <QApplication>

#include "platform/event_loop.h"
#include "support/window/alert.h"
#include "ui/transfer_fixture.h"

namespace {

class Quit : public TransferTest {
 protected:
  /// Runs the program's loop with `busy` in it, asks for the end as soon as `when` holds, and gives the exit
  /// status.
  int QuitDuring(const std::function<void()>& busy, const std::function<bool()>& when) {
    bool over = false;
    platform::EventLoopPost([&] {
      busy();
      over = true;
    });
    const Meanwhile quit(when, [&] { delegate->EvQuit(); });
    const int status = platform::ApplicationRun();
    EXPECT_TRUE(quit.Acted());
    EXPECT_TRUE(over) << "the job was left on the stack";
    EXPECT_FALSE(Main().IsWindowValid());
    delegate.reset();
    return status;
  }
};

TEST_F(Quit, EndsAStalledDownload) {
  MakeRemote("stall.bin", RandomBytes(2 * 1024 * 1024));
  StartConnected();
  alerts.Hold(true);  // Nor does the question whether to take back what has come.
  EXPECT_EQ(QuitDuring([&] { TransferTest::Download({"stall.bin"}); },
                       [] { return Dialog(kDownloading) && Progress(Dialog(kDownloading)) > 0.2; }),
            0);
  alerts.Hold(false);
  EXPECT_EQ(Setting("Current"), kSite);
  EXPECT_EQ(history.Count("コマンド: USER "), 1u) << "the rest of the command logged on again";
}

TEST_F(Quit, EndsAnOpenQuestion) {
  MakeRemote("a.txt", "new");
  MakeLocal("a.txt", "old");
  StartConnected();
  // Neither the dialog of the running download nor the question above it stays.
  alerts.Hold(true);
  EXPECT_EQ(QuitDuring([&] { TransferTest::Download({"a.txt"}); }, [] { return platform::AlertIsOpen(); }), 0);
  alerts.Hold(false);
  EXPECT_EQ(ContentOf(Local("a.txt")), "old");
}

TEST_F(Quit, EndsTheQuestionForAPassword) {
  Serve("wrong");
  alerts.Expect("サーバーにログインできません。", "続行");
  OpenProgram();
  EXPECT_EQ(QuitDuring([] {}, [] { return Dialog("ユーザーログイン") != nullptr; }), 0);
}

TEST_F(Quit, EndsAnOpenMenu) {
  KeepSite("127.0.0.1:1");
  Put("Settings/Current", "");
  StartProgram();
  EXPECT_EQ(QuitDuring([&] { PressTool(platform::kMainToolBar, kCommandConnect); },
                       [] { return QApplication::activePopupWidget() != nullptr; }),
            0);
}

TEST_F(Quit, IsRefusedWhileAnAlertIsUpOrItIsForbidden) {
  StartProgram();
  alerts.Hold(true);
  bool refused = false;
  const Meanwhile ask([] { return platform::AlertIsOpen(); },
                      [&] {
                        refused = !Main().CmExit();
                        platform::AlertDismiss();
                      });
  LAlertWithButtonText::DisplayOkInfo(&Main(), "お知らせ", "題", "OK");
  alerts.Hold(false);
  EXPECT_TRUE(refused);
  ++LMainWindow::iDontQuitCounter;
  EXPECT_FALSE(Main().CmExit());
  --LMainWindow::iDontQuitCounter;
  EXPECT_EQ(CloseProgram(), 0);
}

}  // namespace
