// Rename, new folder, delete, permissions and open on the remote side, against a server that refuses what a name asks
// it to.
#include <QCheckBox>
#include <QDesktopServices>
#include <QUrl>
#include <unistd.h>

#include "platform/qt/native_window.h"
#include "support/environment.h"
#include "ui/layout_checks.h"
#include "ui/screens.h"
#include "ui/window_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Takes the files that the program gives to the desktop.
class Opened : public QObject {
  Q_OBJECT
 public:
  Opened() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "Take"); }
  ~Opened() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
  Texts paths;

 public slots:
  void Take(const QUrl& url) { paths.push_back(url.toLocalFile().toStdString()); }
};

class RemoteOperations : public WindowTest {
 protected:
  /// How many such commands went out.
  size_t Sent(const std::string& word) const { return history.Count("コマンド: " + word); }
  /// Answers the dialog of the nine boxes with those that are to be on.
  void Permissions(std::initializer_list<const char*> rows, const std::vector<int>& boxes) {
    Select(kRemoteList, rows);
    const Meanwhile set([] { return Dialog("ファイルのパーミッションを変更する") != nullptr; },
                        [&] {
                          platform::Window* dialog = Dialog("ファイルのパーミッションを変更する");
                          for (const int box : {109, 110, 111, 114, 115, 116, 119, 120, 121}) {
                            if (platform::ControlGetCheck(dialog, box)) shownBoxes.push_back(box);
                            platform::ControlSetCheck(dialog, box,
                                                      std::find(boxes.begin(), boxes.end(), box) != boxes.end());
                          }
                          SaveScreen(dialog, "permissions");
                          ExpectTabOrder(dialog);
                          ui::Press(dialog, kCommandOk);
                        });
    EXPECT_TRUE(Choose(kRemoteList, "ファイルのパーミッションを変更する"));
    EXPECT_TRUE(set.Acted());
  }
  std::string Rights(const char* name) {
    const Texts names = Names(kRemoteList);
    const auto found = std::find(names.begin(), names.end(), name);
    return found == names.end() ? "" : ui::Column(Window(), kRemoteList, 4)[static_cast<size_t>(found - names.begin())];
  }

  std::vector<int> shownBoxes;
};

// Rename

TEST_F(RemoteOperations, ARenameGoesToTheServerAndSelectsTheRow) {
  StartConnected({"a.txt", "b.txt", "z.txt"});
  RenameTo(kRemoteList, "b.txt", "  会議 4月.txt ");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("会議 4月.txt", "a.txt", "z.txt"));
  EXPECT_EQ(CurrentRow(kRemoteList), "会議 4月.txt");
  EXPECT_TRUE(std::filesystem::exists(Remote("会議 4月.txt")));
  EXPECT_THAT(Messages(), Contains("名前を変更中… "));
}

TEST_F(RemoteOperations, ARenameThatIsNoneSendsNothing) {
  StartConnected({"Report.txt", "b.txt"});
  RenameTo(kRemoteList, "Report.txt", "report.TXT");
  Select(kRemoteList, {"b.txt"});
  EXPECT_TRUE(Choose(kRemoteList, "名前を変更"));
  EXPECT_TRUE(ui::EditRow(Window(), kRemoteList, nullptr));
  alerts.Expect("ファイル名を入力してください", "OK");
  RenameTo(kRemoteList, "b.txt", "   ");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("b.txt", "Report.txt"));
  Select(kRemoteList, {"Report.txt", "b.txt"});
  Main().Command(kCommandMenuRemoteRename, 0);
  EXPECT_FALSE(ui::EditRow(Window(), kRemoteList, nullptr)) << "two rows";
  EXPECT_EQ(Sent("RNFR"), 0u);
}

TEST_F(RemoteOperations, ARefusedRenameSaysSo) {
  StartConnected({"refuse.txt"});
  alerts.Expect("ファイル名の変更ができません。", "OK");
  RenameTo(kRemoteList, "refuse.txt", "b.txt");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("refuse.txt"));
  EXPECT_EQ(Sent("RNTO"), 0u);
}

// New folder

TEST_F(RemoteOperations, ANewFolderIsMadeAndShownUnlessItsNameIsTakenOrEmpty) {
  StartConnected({"a.txt"});
  NewFolder(kRemoteList, "資料");
  EXPECT_TRUE(std::filesystem::is_directory(Remote("資料")));
  EXPECT_THAT(Names(kRemoteList), ElementsAre("資料", "a.txt"));
  EXPECT_EQ(CurrentRow(kRemoteList), "資料");
  EXPECT_THAT(Messages(), Contains("新規フォルダ「資料」が作成されました "));
  alerts.Expect("同名のフィルタまたはディレクトリが存在します", "OK");
  NewFolder(kRemoteList, "資料");
  NewFolder(kRemoteList, "");
  EXPECT_EQ(Sent("MKD"), 1u);
}

TEST_F(RemoteOperations, ARefusedFolderIsSeenInTheList) {
  StartConnected();
  alerts.Expect("以下のフォルダの作成に失敗しました： refuse この", "OK");
  NewFolder(kRemoteList, "refuse");
  EXPECT_THAT(Names(kRemoteList), IsEmpty());
  // Three tries, each with a reconnect.
  EXPECT_EQ(Sent("MKD refuse"), 3u);
  EXPECT_THAT(Messages(), Contains("ディレクトリを作成できませんでした：refuse"));
  EXPECT_THAT(Messages(), Contains("以下のフォルダの作成に失敗しました： refuse "));
}

// Delete

TEST_F(RemoteOperations, DeletingATreeAsksAndTakesAllOfIt) {
  StartConnected({"古い/1.txt", "古い/下/2.txt", "古い/下/深い/3.txt", "a.txt", "z.txt"});
  Select(kRemoteList, {"古い"});
  const std::string question = "選択したフォルダ：\n\"古い\"を削除してよろしいですか？";
  alerts.Expect(question, "キャンセル");
  EXPECT_TRUE(Choose(kRemoteList, "削除"));
  EXPECT_EQ(Sent("DELE") + Sent("RMD"), 0u);
  alerts.Expect(question, "削除");
  bool progress = false;
  const Meanwhile seen([] { return Dialog("削除中") != nullptr; }, [&] { progress = true; });
  EXPECT_TRUE(Choose(kRemoteList, "削除"));
  EXPECT_TRUE(progress);
  EXPECT_FALSE(std::filesystem::exists(Remote("古い")));
  EXPECT_THAT(Names(kRemoteList), ElementsAre("a.txt", "z.txt"));
  EXPECT_EQ(CurrentRow(kRemoteList), "a.txt") << "the row that stood there";
  EXPECT_THAT(Messages(), Contains("古いフォルダを削除しています"));
}

TEST_F(RemoteOperations, TheFirstRefusedFileEndsADeletion) {
  StartConnected({"1.txt", "2-refuse.txt", "3.txt"});
  Select(kRemoteList, {"1.txt", "2-refuse.txt", "3.txt"});
  alerts.Expect("選択したファイルまたはディレクトリを削除してよろしいですか？", "削除");
  alerts.Expect("ファイル「2-refuse.txt」を削除できません。", "続行");
  EXPECT_TRUE(Choose(kRemoteList, "削除"));
  EXPECT_THAT(Names(kRemoteList), ElementsAre("2-refuse.txt", "3.txt"));
  EXPECT_THAT(Messages(), Contains("ファイル「2-refuse.txt」を削除できません。"));
}

TEST_F(RemoteOperations, AFolderThatStaysIsTriedTwiceOverANewConnection) {
  StartConnected({"a/refuse.txt", "b.txt"});
  Select(kRemoteList, {"a", "b.txt"});
  alerts.Expect("選択したファイルまたはディレクトリ", "削除");
  alerts.Expect("ディレクトリ「a」を削除できません。", "続行");
  EXPECT_TRUE(Choose(kRemoteList, "削除"));
  EXPECT_EQ(Sent("DELE refuse.txt"), 2u);
  EXPECT_TRUE(std::filesystem::exists(Remote("b.txt"))) << "nothing further is deleted";
}

// Permissions

TEST_F(RemoteOperations, PermissionsAreReadSetAndShown) {
  MakeRemote("a.txt", "x");
  std::filesystem::permissions(Remote("a.txt"), std::filesystem::perms(0640));
  const Environment lacking("ORVANE_LACKING_COMMANDS", "MLSD MLST");
  StartConnected();
  EXPECT_EQ(Rights("a.txt"), "-rw-r-----");
  Permissions({"a.txt"}, {109, 110, 111, 114, 116, 119, 121});
  EXPECT_THAT(shownBoxes, ElementsAre(109, 110, 114)) << "the boxes show what the listing said";
  EXPECT_EQ(std::filesystem::status(Remote("a.txt")).permissions(), std::filesystem::perms(0755));
  EXPECT_THAT(Messages(), Contains("以下のファイルのパーミッションが設定されました：a.txt"));
  EXPECT_EQ(Sent("SITE chmod 755 a.txt"), 1u);
  EXPECT_EQ(Rights("a.txt"), "-rwxr--r--") << "until the next listing a 5 shows so";
}

TEST_F(RemoteOperations, AServerWithoutPermissionsEndsTheRunAtTheFirstFile) {
  StartConnected({"1-refuse.txt", "2.txt"});
  Permissions({"1-refuse.txt", "2.txt"}, {109});
  EXPECT_THAT(Messages(), Contains("このサーバーはパーミッションの変更に対応していません。"));
  EXPECT_EQ(Sent("SITE chmod"), 1u);
}

// Open

TEST_F(RemoteOperations, AFileIsOpenedFromACopy) {
  MakeRemote("メモ.txt", "本文");
  StartConnected();
  const Opened opened;
  Open(kRemoteList, "メモ.txt");
  ASSERT_EQ(opened.paths.size(), 1u);
  EXPECT_EQ(ReadFile(opened.paths[0]), "本文");
  EXPECT_THAT(Messages(), Contains("ファイルを開くことができました： メモ.txt"));
  EXPECT_TRUE(ui::WaitUntil([&] { return Main().IsTimerSet(MainDialog::kTimerWatch); }, 1000)) << "the watch goes on";
}

TEST_F(RemoteOperations, ALinkOpensWhatItLeadsTo) {
  MakeRemote("folder/inside.txt", "x");
  MakeRemote("file.txt", "本文");
  ASSERT_EQ(symlink("folder", Remote("tofolder").c_str()), 0);
  ASSERT_EQ(symlink("file.txt", Remote("tofile").c_str()), 0);
  const Environment lacking("ORVANE_LACKING_COMMANDS", "MLSD MLST");
  StartConnected();
  const Opened opened;
  const Texts names = Names(kRemoteList);
  for (size_t row = 0; row < names.size(); ++row) {
    if (names[row].rfind("tofile", 0) == 0) Open(kRemoteList, names[row].c_str());
  }
  EXPECT_THAT(Messages(), Contains("シンボリックリンクをファイルとして開こうとしています： tofile"));
  ASSERT_EQ(opened.paths.size(), 1u);
  EXPECT_EQ(ReadFile(opened.paths[0]), "本文");
  ASSERT_TRUE(Main().remotePane.bConnected);
  for (const std::string& name : Names(kRemoteList)) {
    if (name.rfind("tofolder", 0) == 0) Main().LVSetCurSel(kRemoteList, Main().LVFindString(kRemoteList, name.c_str()));
  }
  Main().Command(4002, 0);
  EXPECT_EQ(PathOf(kRemotePath), "/tofolder");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("inside.txt"));
}

/// The tries to enter it have left the session where a logon puts it, and there are other files.
TEST_F(RemoteOperations, AFolderThatCannotBeEnteredLeavesThePaneAndTheSession) {
  const std::string shown = Remote("sub/x.txt"), other = Remote("x.txt");
  StartConnected({"sub/refuse/a.txt", "sub/x.txt", "x.txt"});
  for (const std::string& file : {shown, other}) std::filesystem::permissions(file, std::filesystem::perms(0600));
  Open(kRemoteList, "sub");
  Open(kRemoteList, "refuse");
  EXPECT_EQ(PathOf(kRemotePath), "/sub");
  EXPECT_THAT(Names(kRemoteList), ElementsAre("refuse", "x.txt"));
  Permissions({"x.txt"}, {110});
  EXPECT_NE(std::filesystem::status(shown).permissions(), std::filesystem::perms(0600));
  EXPECT_EQ(std::filesystem::status(other).permissions(), std::filesystem::perms(0600));
  EXPECT_THAT(Messages(), Contains("ディレクトリを「/sub/refuse」に変更できません。ディレクトリ上で許可があるか確認して"
                                   "ください。"));
}

}  // namespace

#include "remote_operations_test.moc"
