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
  for (const auto& [y, marked] : {std::pair(2, 0), {height - 2, 1}, {height + 2, 1}, {9 * height, 3}}) {
    Main().LVDrawInsertBar(kLocalList, y);
    for (int gap = 0; gap <= 3; ++gap) EXPECT_EQ(isMarked(gap), gap == marked) << y << " " << gap;
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
  EXPECT_EQ(SiteField("RecentRemoteDirectory"), "/資料");
}

TEST_F(Panes, UpSelectsTheFolderItLeavesAndANewWayDropsTheForwardPart) {
  StartConnected({"a/x.txt", "b/x.txt", "c/x.txt"});
  EXPECT_FALSE(IsOn(kCommandRemoteUp)) << "at the root";
  Open(kRemoteList, "b");
  EXPECT_TRUE(IsOn(kCommandRemoteUp));
  Tool(kCommandRemoteUp);
  EXPECT_EQ(PathOf(kRemotePath), "/");
  EXPECT_EQ(CurrentRow(kRemoteList), "b");
  Tool(kCommandRemoteBack);
  EXPECT_EQ(PathOf(kRemotePath), "/b") << "going up is a step of its own";
  Tool(kCommandRemoteBack);
  EXPECT_TRUE(IsOn(kCommandRemoteForward));
  Open(kRemoteList, "a");
  EXPECT_FALSE(IsOn(kCommandRemoteForward));
  Tool(kCommandRemoteBack);
  EXPECT_EQ(PathOf(kRemotePath), "/");
}

TEST_F(Panes, EachHistoryHoldsTenFolders) {
  for (int i = 0; i < 11; ++i) {
    for (const std::string& side : {Remote(), Local()}) WriteFile(side + "d" + std::to_string(i) + "/x", "x");
  }
  StartConnected();
  const struct {
    int path, back;
    std::string top, shown;
  } panes[] = {{kLocalPath, kCommandLocalBack, Local(), Local("d1/")}, {kRemotePath, kCommandRemoteBack, "/", "/d1"}};
  for (const auto& pane : panes) {
    for (int i = 0; i < 11; ++i) TypePath(pane.path, pane.top + "d" + std::to_string(i));
    int steps = 0;
    for (; IsOn(pane.back); ++steps) Tool(pane.back);
    EXPECT_EQ(steps, 9);
    EXPECT_EQ(PathOf(pane.path), pane.shown);
  }
  EXPECT_EQ(platform::ComboCount(Window(), kLocalPath), 10);
}

TEST_F(Panes, RefreshShowsWhatIsNewAndKeepsTheCurrentRow) {
  // The server shows "%2F" as "/": the folder above is no row, since a transfer of it would leave the folder.
  StartConnected({"1.txt", "3.txt", "5.txt", "..%2F/x.txt"});
  Select(kRemoteList, {"3.txt"});
  MakeRemote("2.txt", "x");
  Tool(kCommandRemoteRefresh);
  EXPECT_THAT(Names(kRemoteList), ElementsAre("1.txt", "2.txt", "3.txt", "5.txt"));
  EXPECT_EQ(CurrentRow(kRemoteList), "3.txt");
  EXPECT_THAT(Messages(), testing::IsSupersetOf({std::string("更新中..."), std::string("更新終了。")}));
}

TEST_F(Panes, ATypedRemotePathIsEnteredAndOneThatCannotBeLeavesThePane) {
  std::filesystem::create_directory(Remote("空"));
  StartConnected({"資料/会議.txt", "資料/refuse/x"});
  TypePath(kRemotePath, "/空");
  EXPECT_THAT(Names(kRemoteList), IsEmpty());
  TypePath(kRemotePath, "/資料");
  EXPECT_THAT(Messages(), testing::Contains("ディレクトリの変更が完了しました： /資料"));
  const auto expectRefused = [&](const std::string& path) {
    EXPECT_THAT(Names(kRemoteList), ElementsAre("refuse", "会議.txt"));
    EXPECT_EQ(PathOf(kRemotePath), "/資料");
    EXPECT_THAT(Messages(), testing::Contains("ディレクトリを「" + path +
                                              "」に変更できません。ディレクトリ上で許可があるか確認してください。"));
    EXPECT_TRUE(Main().remotePane.bConnected);
  };
  TypePath(kRemotePath, "/ない");
  expectRefused("/ない");
  Open(kRemoteList, "refuse");
  expectRefused("/資料/refuse");
}

TEST_F(Panes, RemoteFoldersStayOnTopAndSizesGoByTheLengthOfTheirText) {
  for (const auto& [name, kilobytes] : {std::pair("a.txt", 10u), {"c.txt", 9u}, {"10.txt", 1000u}, {"9.txt", 999u}}) {
    MakeRemote(name, std::string(kilobytes * 1024, 'x'));
  }
  StartConnected({"b/x", "d/x"});
  EXPECT_THAT(Names(kRemoteList), ElementsAre("b", "d", "9.txt", "10.txt", "a.txt", "c.txt"));
  ClickHeading(kRemoteList, 0);
  EXPECT_THAT(Names(kRemoteList), ElementsAre("d", "b", "c.txt", "a.txt", "10.txt", "9.txt"));
  Tool(kCommandRemoteRefresh);
  EXPECT_THAT(Names(kRemoteList), ElementsAre("d", "b", "c.txt", "a.txt", "10.txt", "9.txt"));
  ClickHeading(kRemoteList, 1);
  EXPECT_EQ(ui::Column(Window(), kRemoteList, 1), (Texts{"", "", "9 KB", "10 KB", "999 KB", "1,000 KB"}));
  ClickHeading(kRemoteList, 1);
  EXPECT_EQ(ui::Column(Window(), kRemoteList, 1), (Texts{"", "", "1,000 KB", "999 KB", "10 KB", "9 KB"}));
}

TEST_F(Panes, AStartDirectoryThatIsNotThereShowsTheRoot) {
  MakeRemote("a.txt", "x");
  Serve();
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

TEST_F(Panes, TheLocalPaneGoesDownUpBackAndForwardAndIsKeptForTheSite) {
  StartConnected({}, {"写真/海辺/1.txt"});
  Open(kLocalList, "写真");
  EXPECT_EQ(PathOf(kLocalPath), Local("写真"));
  Open(kLocalList, "海辺");
  EXPECT_THAT(Names(kLocalList), ElementsAre("1.txt"));
  Tool(kCommandLocalBack);
  EXPECT_EQ(PathOf(kLocalPath), Local("写真"));
  EXPECT_TRUE(IsOn(kCommandLocalForward));
  Tool(kCommandLocalForward);
  EXPECT_EQ(PathOf(kLocalPath), Local("写真/海辺"));
  EXPECT_FALSE(IsOn(kCommandLocalForward));
  Tool(kCommandLocalUp);
  EXPECT_EQ(PathOf(kLocalPath), Local("写真"));
  EXPECT_EQ(SiteField("RecentLocalDirectory"), Local("写真"));
}

TEST_F(Panes, ATypedLocalPathIsEnteredABadOneIgnoredAndTheRootIsTheTop) {
  WriteFile(Documents() + "/写真/1.txt", "x");
  StartProgram();
  EXPECT_FALSE(IsOn(kCommandLocalBack));
  TypePath(kLocalPath, Documents() + "/写真");
  TypePath(kLocalPath, "/ない/フォルダ");
  EXPECT_THAT(Names(kLocalList), ElementsAre("1.txt"));
  EXPECT_EQ(PathOf(kLocalPath), Documents() + "/写真/");
  TypePath(kLocalPath, "/");
  Tool(kCommandLocalUp);
  EXPECT_EQ(PathOf(kLocalPath), "/");
  EXPECT_THAT(Names(kLocalList), testing::Contains("tmp"));
}

TEST_F(Panes, LocalSizesAreOrderedByTheirTextAndFoldersAmongThem) {
  for (const size_t kilobytes : {10, 9, 1000}) {
    WriteFile(Documents() + "/" + std::to_string(kilobytes), std::string(kilobytes * 1024, 'x'));
  }
  WriteFile(Documents() + "/folder/x", "x");
  StartProgram();
  ClickHeading(kLocalList, 1);
  EXPECT_EQ(ui::Column(Window(), kLocalList, 1), (Texts{"9 KB", "10 KB", "1,000 KB", "フォルダ"}));
  ClickHeading(kLocalList, 1);
  EXPECT_EQ(ui::Column(Window(), kLocalList, 1), (Texts{"フォルダ", "1,000 KB", "10 KB", "9 KB"}));
}

}  // namespace
