// Going through the folders of both panes, by mouse and keys, and the order of their rows.
#include <QtTest/QTest>

#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
#include "ui/window_fixture.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Panes : public WindowTest {
 protected:
  void Tool(int command) { PressTool(IsLocal(command) ? kLocalTools : kRemoteTools, command); }
  static bool IsLocal(int command) { return command >= kCommandLocalReload && command <= kCommandLocalNewFolder; }
  bool IsOn(int command) {
    return testing::Value(EnabledTools(IsLocal(command) ? kLocalTools : kRemoteTools), testing::Contains(command));
  }
  void TypePath(int control, const std::string& path) {
    EXPECT_TRUE(ui::TypeAndReturn(Window(), control, path.c_str())) << path;
  }
};

TEST_F(Panes, AListMarksTheGapWhereADropWouldGo) {
  StartConnected({}, {"a", "b", "c"});
  Main().LVSelectNone(kLocalList);
  platform::ListControl* list = Window()->List(kLocalList);
  const int height = list->visualRect(list->model()->index(0, 0)).height();
  const QRgb blue = list->palette().color(QPalette::Highlight).rgb();
  const auto isMarked = [&](int gap) {
    const QImage picture = list->viewport()->grab().toImage();
    return picture.pixel(picture.width() - 3, gap == 0 ? 0 : gap * height) == blue;
  };
  EXPECT_EQ(Main().LVHitTest(kLocalList, 5, height + 3), 1);
  EXPECT_EQ(Main().LVHitTest(kLocalList, 5, 3 * height + 3), -1);
  const struct {
    int y, gap;
  } rows[] = {{2, 0}, {height - 2, 1}, {height + 2, 1}, {2 * height - 2, 2}, {9 * height, 3}};
  for (const auto& row : rows) {
    Main().LVDrawInsertBar(kLocalList, row.y);
    for (int gap = 0; gap <= 3; ++gap) EXPECT_EQ(isMarked(gap), gap == row.gap) << row.y << " " << gap;
  }
  Main().LVClearInsertBar(kLocalList);
  EXPECT_FALSE(isMarked(3));
}

// Remote

TEST_F(Panes, ADoubleClickEntersARemoteFolderAndBackLeavesIt) {
  StartConnected({"資料/過去/三月.txt"});
  Open(kRemoteList, "資料");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("過去"));
  EXPECT_EQ(PathOf(kRemotePath), "/資料");
  Open(kRemoteList, "過去");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("三月.txt"));
  EXPECT_EQ(PathOf(kRemotePath), "/資料/過去");
  EXPECT_FALSE(IsOn(kCommandRemoteForward));

  Tool(kCommandRemoteBack);
  EXPECT_EQ(PathOf(kRemotePath), "/資料");
  Tool(kCommandRemoteBack);
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_FALSE(IsOn(kCommandRemoteBack));
  Tool(kCommandRemoteForward);
  EXPECT_EQ(PathOf(kRemotePath), "/資料");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("過去"));
  EXPECT_EQ(Field(OpenSite(kSite, server->Address().c_str(), "0"), "RecentRemoteDirectory"), "/資料");
}

TEST_F(Panes, UpSelectsTheFolderItLeaves) {
  for (const char* folder : {"a", "b", "c"}) MakeRemote(std::string(folder) + "/x.txt", "x");
  StartConnected();
  EXPECT_FALSE(IsOn(kCommandRemoteUp)) << "at the root";
  Open(kRemoteList, "b");
  EXPECT_TRUE(IsOn(kCommandRemoteUp));
  Tool(kCommandRemoteUp);
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_EQ(CurrentRow(kRemoteList), "b");
  EXPECT_TRUE(IsOn(kCommandRemoteBack)) << "going up is a step of its own";
}

TEST_F(Panes, ANewWayDropsTheForwardPart) {
  for (const char* folder : {"a", "b"}) MakeRemote(std::string(folder) + "/x.txt", "x");
  StartConnected();
  Open(kRemoteList, "a");
  Tool(kCommandRemoteBack);
  Open(kRemoteList, "b");
  EXPECT_FALSE(IsOn(kCommandRemoteForward));
  Tool(kCommandRemoteBack);
  EXPECT_EQ(PathOf(kRemotePath), "/");
}

TEST_F(Panes, TheRemoteHistoryHoldsTenDirectories) {
  for (int i = 0; i < 11; ++i) MakeRemote("d" + std::to_string(i) + "/x.txt", "x");
  StartConnected();
  for (int i = 0; i < 11; ++i) TypePath(kRemotePath, "/d" + std::to_string(i));
  int steps = 0;
  for (; IsOn(kCommandRemoteBack); ++steps) Tool(kCommandRemoteBack);
  EXPECT_EQ(steps, 9);
  EXPECT_EQ(PathOf(kRemotePath), "/d1");
}

/// The server shows "%2F" as "/". A transfer of such a row would leave the folder.
TEST_F(Panes, TheFolderAboveIsNoRow) {
  MakeRemote("..%2F/x.txt", "x");
  MakeRemote("a.txt", "a");
  StartConnected();
  EXPECT_THAT(Names(kRemoteList), ElementsAre("a.txt"));
}

TEST_F(Panes, RefreshShowsWhatIsNewAndKeepsTheCurrentRow) {
  StartConnected({"1.txt", "3.txt", "5.txt"});
  Select(kRemoteList, {"3.txt"});
  MakeRemote("2.txt", "x");
  Tool(kCommandRemoteRefresh);
  EXPECT_THAT(Names(kRemoteList), ElementsAre("1.txt", "2.txt", "3.txt", "5.txt"));
  EXPECT_EQ(CurrentRow(kRemoteList), "3.txt");
  EXPECT_THAT(Messages(), testing::IsSupersetOf({std::string("更新中..."), std::string("更新終了。")}));
}

TEST_F(Panes, ATypedRemotePathIsEnteredWithReturn) {
  StartConnected({"資料/会議.txt"});
  TypePath(kRemotePath, "/資料");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("会議.txt"));
  EXPECT_EQ(PathOf(kRemotePath), "/資料");
  EXPECT_THAT(Messages(), testing::Contains("ディレクトリの変更が完了しました： /資料"));
}

TEST_F(Panes, ARemotePathThatIsNotThereLeavesThePane) {
  StartConnected({"a.txt"});
  TypePath(kRemotePath, "/ない");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("a.txt"));
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_TRUE(Main().remotePane.bConnected);
  EXPECT_THAT(
      Messages(),
      testing::Contains("ディレクトリを「/ない」に変更できません。ディレクトリ上で許可があるか確認してください。"));
}

TEST_F(Panes, RemoteFoldersStayOnTopInBothDirections) {
  StartConnected({"b/x", "d/x", "a.txt", "c.txt", "10.txt", "9.txt"});
  EXPECT_THAT(Names(kRemoteList), ElementsAre("b", "d", "9.txt", "10.txt", "a.txt", "c.txt"));
  ClickHeading(kRemoteList, 0);
  EXPECT_THAT(Names(kRemoteList), ElementsAre("d", "b", "c.txt", "a.txt", "10.txt", "9.txt"));
  Tool(kCommandRemoteRefresh);
  EXPECT_THAT(Names(kRemoteList), ElementsAre("d", "b", "c.txt", "a.txt", "10.txt", "9.txt"));
}

TEST_F(Panes, RemoteSizesAreOrderedByTheLengthOfTheirText) {
  MakeRemote("ten", std::string(10 * 1024, 'x'));
  MakeRemote("nine", std::string(9 * 1024, 'x'));
  MakeRemote("thousand", std::string(1000 * 1024, 'x'));
  MakeRemote("less", std::string(999 * 1024, 'x'));
  StartConnected({"folder/x"});
  ClickHeading(kRemoteList, 1);
  EXPECT_EQ(ui::Column(Window(), kRemoteList, 1), (Texts{"", "9 KB", "10 KB", "999 KB", "1,000 KB"}));
  ClickHeading(kRemoteList, 1);
  EXPECT_EQ(ui::Column(Window(), kRemoteList, 1), (Texts{"", "1,000 KB", "999 KB", "10 KB", "9 KB"}));
}

TEST_F(Panes, AnEmptyRemoteFolderSaysSo) {
  std::filesystem::create_directory(Remote("空"));
  StartConnected();
  Open(kRemoteList, "空");
  EXPECT_EQ(PathOf(kRemotePath), "/空");
  EXPECT_THAT(Names(kRemoteList), IsEmpty());
}

TEST_F(Panes, AStartDirectoryThatIsNotThereShowsTheRoot) {
  MakeRemote("a.txt", "x");
  server = std::make_unique<PaneServer>(Remote());
  KeepSite(server->Address());
  Put("FTPAccounts/" + std::string(kSite) + "/" + server->Address() + "/0/Directory", "/ない");
  StartProgram();
  EXPECT_TRUE(Main().remotePane.bConnected);
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("a.txt"));
}

// Local

TEST_F(Panes, TheLocalPaneShowsFoldersFirstAndNothingHidden) {
  for (const char* name : {".hidden", "b.txt", "a.TXT", "z/x", ".git/x"}) {
    WriteFile(Documents() + "/" + name, std::string(1500, 'x'));
  }
  StartProgram();
  EXPECT_THAT(Names(kLocalList), ElementsAre("z", "a.TXT", "b.txt"));
  EXPECT_EQ(ui::Column(Window(), kLocalList, 1), (Texts{"フォルダ", "2 KB", "2 KB"}));
  EXPECT_EQ(ui::Column(Window(), kLocalList, 2), (Texts{"", ".TXT", ".txt"}));
  EXPECT_EQ(CurrentRow(kLocalList), "z");
}

TEST_F(Panes, TheLocalPaneGoesDownUpBackAndForward) {
  WriteFile(Documents() + "/写真/海辺/1.txt", "x");
  StartProgram();
  EXPECT_FALSE(IsOn(kCommandLocalBack));
  Open(kLocalList, "写真");
  EXPECT_EQ(PathOf(kLocalPath), Documents() + "/写真");
  Open(kLocalList, "海辺");
  EXPECT_THAT(Names(kLocalList), ElementsAre("1.txt"));
  Tool(kCommandLocalBack);
  EXPECT_EQ(PathOf(kLocalPath), Documents() + "/写真");
  EXPECT_TRUE(IsOn(kCommandLocalForward));
  Tool(kCommandLocalForward);
  EXPECT_EQ(PathOf(kLocalPath), Documents() + "/写真/海辺");
  EXPECT_FALSE(IsOn(kCommandLocalForward));
  Tool(kCommandLocalUp);
  EXPECT_EQ(PathOf(kLocalPath), Documents() + "/写真");
}

TEST_F(Panes, GoingUpFromTheLocalRootStaysThere) {
  StartProgram();
  TypePath(kLocalPath, "/");
  Tool(kCommandLocalUp);
  EXPECT_EQ(PathOf(kLocalPath), "/");
  EXPECT_THAT(Names(kLocalList), testing::Contains("tmp"));
}

TEST_F(Panes, ATypedLocalPathIsEnteredAndABadOneIgnored) {
  WriteFile(Documents() + "/写真/1.txt", "x");
  StartProgram();
  TypePath(kLocalPath, Documents() + "/写真");
  EXPECT_THAT(Names(kLocalList), ElementsAre("1.txt"));
  EXPECT_EQ(PathOf(kLocalPath), Documents() + "/写真/");
  TypePath(kLocalPath, "/ない/フォルダ");
  EXPECT_THAT(Names(kLocalList), ElementsAre("1.txt"));
  EXPECT_EQ(PathOf(kLocalPath), Documents() + "/写真/");
}

TEST_F(Panes, TheLocalHistoryHoldsTenFolders) {
  for (int i = 0; i < 11; ++i) WriteFile(Documents() + "/d" + std::to_string(i) + "/x", "x");
  StartProgram();
  for (int i = 0; i < 11; ++i) TypePath(kLocalPath, Documents() + "/d" + std::to_string(i));
  EXPECT_EQ(platform::ComboCount(Window(), kLocalPath), 10);
  int steps = 0;
  for (; IsOn(kCommandLocalBack); ++steps) Tool(kCommandLocalBack);
  EXPECT_EQ(steps, 9);
  EXPECT_EQ(PathOf(kLocalPath), Documents() + "/d1/");
}

TEST_F(Panes, LocalSizesAreOrderedByTheirTextAndFoldersAmongThem) {
  WriteFile(Documents() + "/ten", std::string(10 * 1024, 'x'));
  WriteFile(Documents() + "/nine", std::string(9 * 1024, 'x'));
  WriteFile(Documents() + "/big", std::string(1000 * 1024, 'x'));
  WriteFile(Documents() + "/folder/x", "x");
  StartProgram();
  ClickHeading(kLocalList, 1);
  EXPECT_EQ(ui::Column(Window(), kLocalList, 1), (Texts{"9 KB", "10 KB", "1,000 KB", "フォルダ"}));
  ClickHeading(kLocalList, 1);
  EXPECT_EQ(ui::Column(Window(), kLocalList, 1), (Texts{"フォルダ", "1,000 KB", "10 KB", "9 KB"}));
}

TEST_F(Panes, TheLocalFolderIsKeptForTheSite) {
  StartConnected({}, {"写真/1.txt"});
  Open(kLocalList, "写真");
  EXPECT_EQ(Field(OpenSite(kSite, server->Address().c_str(), "0"), "RecentLocalDirectory"), Local("写真"));
}

}  // namespace
