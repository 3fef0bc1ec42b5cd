// Downloads through the button of the window, with the progress dialog that a user sees.
#include <QTimer>
#include <Qt>

#include "support/window/menus.h"
#include "ui/transfer_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;

class Download : public TransferTest {};

TEST_F(Download, BringsTheSelectedFilesAndLeavesTheOthers) {
  const std::string large = RandomBytes(3 * 1024 * 1024 + 17);
  MakeRemote("大きい.bin", large);
  MakeRemote("空.txt", "");
  StartConnected({"残る.txt"});
  TransferTest::Download({"大きい.bin", "空.txt"});
  EXPECT_EQ(ContentOf(Local("大きい.bin")), large);
  EXPECT_EQ(ContentOf(Local("空.txt")), "");
  EXPECT_FALSE(Exists(Local("残る.txt")));
  EXPECT_THAT(Names(kLocalList), testing::UnorderedElementsAre("大きい.bin", "空.txt"));
  EXPECT_THAT(Messages(), testing::IsSupersetOf({std::string("順番待ち中のファイル： 大きい.bin"),
                                                 std::string("順番待ち中のファイル： 空.txt"),
                                                 std::string("ファイルのダウンロード完了。")}));
  EXPECT_EQ(platform::WindowTopModal(), nullptr);
}

TEST_F(Download, TheDialogTellsWhatHappensAndHoldsTheWindowUntilEscape) {
  MakeRemote("stall.bin", RandomBytes(2 * 1024 * 1024));
  StartConnected();
  alerts.Expect("ダウンロードされたローカルファイルまたはフォルダを削除しますか？", "削除しない");
  const Meanwhile look([] { return Dialog(kDownloading) && Progress(Dialog(kDownloading)) > 0.2; },
                       [&] {
                         platform::Window* dialog = Dialog(kDownloading);
                         EXPECT_LT(Progress(dialog), 0.5);
                         EXPECT_EQ(ui::Text(dialog, kActionLine), "1個（全1個中）のファイルをダウンロード中");
                         EXPECT_THAT(ui::Text(dialog, kItemLine), testing::MatchesRegex("/stall.bin: [0-9 ]+%"));
                         EXPECT_EQ(LMainMenu::uRefCount, 1u);
                         EXPECT_FALSE(ui::PressTool(Window(), kRemoteTools, kCommandRemoteRefresh));
                         EXPECT_FALSE(Main().CmExit());
                         ui::Key(dialog, Qt::Key_Escape);
                       });
  TransferTest::Download({"stall.bin"});
  EXPECT_TRUE(look.Acted());
  ExpectCancelled(true);
}

/// Each question to it takes its whole time-out.
TEST_F(Download, AServerThatFallsSilentIsNotAskedForTheDateOfEachFile) {
  MakeRemote("0-stall.bin", RandomBytes(2 * 1024 * 1024));
  StartConnected({"a.txt", "b.txt", "c.txt"});
  gFtpTimeouts.replyMs = gFtpTimeouts.closingReplyMs = gFtpTimeouts.greetingMs = 100;
  gFtpTimeouts.aborReplyMs = gFtpTimeouts.lateReplyDownloadMs = 100;
  alerts.Expect("ダウンロードされたローカルファイルまたはフォルダを削除しますか？", "削除しない");
  QTimer user;  // What is refreshed behind the run asks for the password where it does not get on.
  QObject::connect(&user, &QTimer::timeout, &user, [] {
    if (platform::Window* login = Dialog("ユーザーログイン")) ui::Press(login, kCommandCancel);
  });
  user.start(20);
  const auto transfer = [&] { TransferTest::Download({"0-stall.bin", "a.txt", "b.txt", "c.txt"}); };
  NewCommands();
  CancelDuring(kDownloading, transfer, [&](platform::Window*) {
    if (SizeOf(Local("0-stall.bin")) == 0) return false;
    server->FallSilent();
    return true;
  });
  const Texts dates = NewCommands({"MDTM "});
  EXPECT_EQ(dates, Texts{"MDTM /c.txt"});
  EXPECT_EQ(history.Count("ファイルのダウンロード完了。"), 3u);
  EXPECT_TRUE(ui::WaitUntil([&] { return !Main().remotePane.bConnected && !ui::ModalWindow(); }));
}

TEST_F(Download, ACutInTheMiddleLeavesNoHalfFileAndTheProgramConnectsAgain) {
  MakeRemote("cut.bin", RandomBytes(2 * 1024 * 1024));
  MakeRemote("b.txt", "b");
  StartConnected();
  Press(kLocalGo);  // What the run itself changes in the store is there now.
  const Texts before = StoreWithoutCounts();
  NewCommands();
  TransferTest::Download({"cut.bin", "b.txt"});
  // The loss in the last attempt is found by the next file.
  EXPECT_THAT(NewCommands({"USER ", "RETR "}), ElementsAre("RETR /cut.bin", "USER anna", "RETR /cut.bin", "USER anna",
                                                           "RETR /cut.bin", "USER anna", "RETR /b.txt"));
  EXPECT_FALSE(Exists(Local("cut.bin")));
  EXPECT_THAT(Messages(), Contains("以下のリモートファイルのダウンロードを失敗中：/cut.bin"));
  EXPECT_EQ(ContentOf(Local("b.txt")), "b") << "one file that fails does not end the run";
  EXPECT_EQ(StoreWithoutCounts(), before);
}

}  // namespace
