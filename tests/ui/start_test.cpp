// From the opening of the window to the first connection, and what a closed program leaves.
#include <chrono>

#include "ui/window_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr unsigned kPlainColor = 0xF0F0F0;
constexpr unsigned kErrorColor = 0xF62850;

class Start : public WindowTest {
 protected:
  static void ExpectNoCurrentSite() {
    for (const char* key : {"Current", "CurrentServer", "CurrentUser"}) EXPECT_EQ(Setting(key), kAbsent) << key;
  }
};

TEST_F(Start, WithoutASiteSaysWhatToDoAndOnlyTheLocalPaneIsOn) {
  WriteFile(Documents() + "/手紙.txt", "x");
  StartProgram();
  EXPECT_EQ(Messages(), (Texts{"Orvane FTPファイル転送ソフト 実行", "接続ボタンをクリックしてサイトに接続する"}));
  EXPECT_TRUE(ui::LogShows(Window(), kHistory, "\t接続ボタンをクリックしてサイトに接続する"));
  EXPECT_EQ(HistoryColor(), kPlainColor);
  EXPECT_THAT(StatusBar(), HasSubstr("Orvane FTPファイル転送ソフト v 5.01"));
  EXPECT_THAT(StatusBar(), HasSubstr("FTPサイトに接続されていません"));
  EXPECT_THAT(Names(kRemoteList), IsEmpty());
  EXPECT_EQ(PathOf(kLocalPath), Documents());
  EXPECT_EQ(AccountsNumSites(), 0);
  ExpectNoCurrentSite();
  EXPECT_EQ(Setting("FirstRun"), "1");
  EXPECT_EQ(Setting("DragSource"), "local");
  for (const int off : {kRemotePath, kUploadButton, kDownloadButton, kSynchroniseButton})
    EXPECT_FALSE(IsEnabled(off)) << off;
  for (const int on : {kLocalPath, kLocalGo, kLocalList, kRemoteList, kRemoteGo}) EXPECT_TRUE(IsEnabled(on)) << on;
  EXPECT_THAT(EnabledTools(kRemoteTools), IsEmpty());
  EXPECT_THAT(EnabledTools(kLocalTools), ElementsAre(kCommandLocalRename, kCommandLocalNewFolder, kCommandLocalDelete,
                                                     kCommandLocalRefresh, kCommandLocalUp));
  EXPECT_THAT(EnabledTools(platform::kMainToolBar), Not(testing::Contains(kCommandDisconnect)));
  LOGERROR("だめ");
  EXPECT_EQ(HistoryColor(), kErrorColor);
}

TEST_F(Start, ConnectsToTheCurrentSiteAfterATenthOfASecondAndTheRemotePaneIsOn) {
  for (const char* name : {"資料/会議.txt", "お知らせ.txt"}) MakeRemote(name, "x");
  MakeLocal("b.txt", "x");
  Serve();
  OpenProgram();
  EXPECT_FALSE(Main().remotePane.bConnected);
  EXPECT_TRUE(platform::WindowIsVisible(Window()));
  const auto opened = std::chrono::steady_clock::now();
  ASSERT_TRUE(ui::WaitUntil([&] { return history.Lines().size() > 1; }));
  EXPECT_GE(std::chrono::steady_clock::now() - opened, std::chrono::milliseconds(60));
  ASSERT_TRUE(WaitForTheStart());

  EXPECT_THAT(Names(kRemoteList), ElementsAre("資料", "お知らせ.txt"));
  EXPECT_EQ(ui::Column(Window(), kRemoteList, 2), (Texts{"フォルダ", "ファイル"}));
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_EQ(PathOf(kLocalPath), Local());
  EXPECT_THAT(StatusBar(), HasSubstr(std::string(kSite) + " (" + server->Address() + ")にannaとして接続中"));
  EXPECT_THAT(Messages(),
              testing::IsSupersetOf({"サーバーに接続しています：" + server->Address(), std::string("接続済み")}));
  EXPECT_TRUE(ui::LogShows(Window(), kHistory, "\tコマンド: PWD\n"));
  EXPECT_FALSE(Main().remotePane.bReconnectArmed);

  for (const int on : {kRemotePath, kRemoteGo}) EXPECT_TRUE(IsEnabled(on)) << on;
  EXPECT_THAT(EnabledTools(kRemoteTools), ElementsAre(kCommandRemoteNewFolder, kCommandRemoteRefresh));
  EXPECT_THAT(EnabledTools(platform::kMainToolBar), testing::Contains(kCommandDisconnect));
  EXPECT_FALSE(IsEnabled(kDownloadButton));
  Select(kRemoteList, {"お知らせ.txt"});
  EXPECT_TRUE(IsEnabled(kDownloadButton));
  EXPECT_TRUE(IsEnabled(kUploadButton)) << "the local list starts on its first row";
  platform::ListSelectAll(Window(), kLocalList, false);
  EXPECT_FALSE(IsEnabled(kUploadButton));
}

TEST_F(Start, ADisconnectClearsTheRemotePaneAndForgetsTheSite) {
  StartConnected({"a.txt"});
  PressTool(platform::kMainToolBar, kCommandDisconnect);
  EXPECT_THAT(Names(kRemoteList), IsEmpty());
  EXPECT_EQ(PathOf(kRemotePath), "");
  EXPECT_FALSE(IsEnabled(kRemotePath));
  EXPECT_THAT(StatusBar(), HasSubstr("FTPサイトに接続されていません"));
  EXPECT_EQ(Messages().back(), "サーバーから切断されました。");
  ExpectNoCurrentSite();
}

TEST_F(Start, ClosingKeepsTheSiteOfAnOpenConnection) {
  StartConnected();
  EXPECT_EQ(CloseProgram(), 0);
  EXPECT_EQ(Setting("Current"), kSite);
  EXPECT_EQ(Setting("CurrentServer"), server->Address());
  EXPECT_EQ(Setting("CurrentUser"), "anna");
  EXPECT_EQ(Messages().back(), "Orvane FTPファイル転送ソフト 終了する。");
}

TEST_F(Start, ClosingWithoutAConnectionForgetsTheSite) {
  KeepSite("127.0.0.1:1");
  OpenProgram();  // Closed before the first connection.
  EXPECT_EQ(CloseProgram(), 0);
  ExpectNoCurrentSite();
}

TEST_F(Start, ASiteThatWasDeletedIsForgotten) {
  Put("Settings/Current", "消したサイト");
  Put("Settings/CurrentServer", "");
  Put("Settings/CurrentUser", "anna");
  StartProgram();
  ExpectNoCurrentSite();
  EXPECT_EQ(Messages().back(), "接続ボタンをクリックしてサイトに接続する");
}

TEST_F(Start, SizePlaceAndDividerComeBackAndTheDividerHasItsBounds) {
  StartProgram();
  const platform::Rect chosen = {31, 17, 1011, 655};
  platform::WindowSetFrame(Window(), chosen);
  ui::Pump(20);
  const int before = platform::ControlGetPlace(Window(), kDivider).y;
  DragDivider(-40);
  EXPECT_EQ(platform::ControlGetPlace(Window(), kDivider).y, before - 40);
  EXPECT_EQ(CloseProgram(), 0);
  EXPECT_EQ(Raw("MainWindow/DividerY"), std::to_string(before - 40));

  StartProgram();
  const platform::Rect frame = platform::WindowGetFrame(Window());
  EXPECT_EQ(frame.x, chosen.x);
  EXPECT_EQ(frame.y, chosen.y);
  EXPECT_EQ(frame.width, chosen.width);
  EXPECT_EQ(frame.height, chosen.height);
  EXPECT_EQ(platform::ControlGetPlace(Window(), kDivider).y, before - 40);
  DragDivider(-2000);
  const platform::Rect highest = platform::ControlGetPlace(Window(), kRemoteList);
  EXPECT_EQ(highest.y + highest.height, 180);
  DragDivider(2000);
  int width = 0, height = 0;
  platform::WindowGetClientSize(Window(), width, height);
  const platform::Rect lowest = platform::ControlGetPlace(Window(), kRemoteList);
  EXPECT_LE(lowest.y + lowest.height, height - platform::StatusBarHeight(Window()));
  const int bottom = platform::ControlGetPlace(Window(), kDivider).y;
  EXPECT_EQ(CloseProgram(), 0);
  StartProgram();
  EXPECT_EQ(platform::ControlGetPlace(Window(), kDivider).y, bottom);
}

}  // namespace
