// Names that are not UTF-8: the window shows what they say, the server and the disk get the bytes they have.
#include <QAbstractItemModel>
#include <QFileDialog>

#include "platform/qt/combo_control.h"
#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
#include "support/files.h"
#include "ui/screens.h"
#include "ui/transfer_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

#define FOLDER "\x8e\x91\x97\xbf"
constexpr const char* kFolder = FOLDER;
constexpr const char* kTest = "\x83\x65\x83X\x83g.txt";  // テスト.txt; its bytes hold letters.
constexpr const char* kTable = "\x95\\ 1.txt";           // 表 1.txt; its bytes hold a backslash.
constexpr const char* kEucJp = "\xc6\xfc\xcb\xdc.txt";   // 日本.txt

class LegacyNames : public TransferTest {
 protected:
  Texts Shown(int list) {
    Texts names;
    const QAbstractItemModel* rows = Window()->List(list)->model();
    for (int row = 0; row < rows->rowCount(); ++row) {
      names.push_back(rows->index(row, 0).data().toString().toStdString());
    }
    return names;
  }
  std::string ShownPath(int control) {
    return Window()->ControlAs<platform::ComboControl>(control)->currentText().toStdString();
  }
};

TEST_F(LegacyNames, TheServerGetsTheBytesItGave) {
  Put("Settings/FiltersOn", "1");
  for (const char* name : {kTest, kTable, kEucJp}) MakeRemote(std::string(kFolder) + "/" + name, name);
  StartConnected();
  EXPECT_THAT(Shown(kRemoteList), ElementsAre("資料"));
  Open(kRemoteList, kFolder);
  EXPECT_EQ(PathOf(kRemotePath), "/" FOLDER);
  EXPECT_EQ(ShownPath(kRemotePath), "/資料");
  EXPECT_THAT(Shown(kRemoteList), testing::UnorderedElementsAre("テスト.txt", "表 1.txt", "日本.txt"));

  Download({kTest, kEucJp});
  EXPECT_EQ(ContentOf(Local(kTest)), kTest);
  EXPECT_EQ(ContentOf(Local(kEucJp)), kEucJp);
  EXPECT_THAT(Shown(kLocalList), testing::UnorderedElementsAre("テスト.txt", "日本.txt"));
  EXPECT_THAT(NewCommands({"RETR"}), testing::UnorderedElementsAre(HasSubstr(kTest), HasSubstr(kEucJp)));
  EXPECT_TRUE(ui::LogShows(Window(), kHistory, "コマンド: RETR /資料/テスト.txt\n"));
  SaveScreen(Window(), "legacy-names");
  for (const auto& [list, filter] : {std::pair(kLocalList, kLocalFilter), {kRemoteList, kRemoteFilter}}) {
    ui::TypeAndReturn(Window(), filter, "スト");
    EXPECT_THAT(Shown(list), ElementsAre("テスト.txt")) << "by what it shows";
    Press(filter + 2);
    EXPECT_GE(Shown(list).size(), 2u);
  }

  RenameTo(kRemoteList, kTest, "テスト.txt");
  EXPECT_THAT(NewCommands({"RNFR"}), IsEmpty()) << "what is shown was left as it is";
  RenameTo(kRemoteList, kTest, "試験.txt");
  EXPECT_THAT(NewCommands({"RN"}), ElementsAre(std::string("RNFR ") + kTest, "RNTO 試験.txt"));
  EXPECT_TRUE(Exists(Remote(FOLDER "/試験.txt")));

  Select(kRemoteList, {kTable});
  alerts.Expect("選択したファイル：\n\"表 1.txt\"を削除してよろしいですか？", "削除");
  EXPECT_TRUE(Choose(kRemoteList, "削除"));
  EXPECT_THAT(NewCommands({"DELE"}), ElementsAre(std::string("DELE ") + kTable));
  EXPECT_FALSE(Exists(Remote(std::string(FOLDER "/") + kTable)));
}

TEST_F(LegacyNames, APathIsGoneToByItsBytes) {
  MakeRemote(std::string(kFolder) + "/" + kTest, "x");
  MakeLocal(std::string(kFolder) + "/" + kTable, "x");
  StartConnected();
  MakeRemote(std::string(kFolder) + "/下/x.txt", "x");
  Open(kRemoteList, kFolder);
  EXPECT_TRUE(ui::TypeAndReturn(Window(), kRemotePath, "/資料/下"));
  EXPECT_EQ(PathOf(kRemotePath), "/" FOLDER "/下");
  EXPECT_THAT(NewCommands({"CWD"}), Contains("CWD /" FOLDER "/下"));
  EXPECT_TRUE(ui::TypeAndReturn(Window(), kRemotePath, "/資料"));
  EXPECT_EQ(SiteField("RecentRemoteDirectory"), "/" FOLDER);
  PressTool(kRemoteTools, kCommandRemoteUp);
  EXPECT_EQ(CurrentRow(kRemoteList), kFolder);
  ASSERT_TRUE(ui::ChooseRow(Window(), kRemotePath, 1));
  EXPECT_EQ(PathOf(kRemotePath), "/" FOLDER);
  EXPECT_EQ(ShownPath(kRemotePath), "/資料");
  MakeRemote(std::string(kFolder) + "/" + kTable, "x");
  Press(kRemoteGo);
  EXPECT_THAT(Shown(kRemoteList), ElementsAre("下", "テスト.txt", "表 1.txt"));
  PressTool(kRemoteTools, kCommandRemoteUp);
  Select(kRemoteList, {kFolder});
  alerts.Expect("選択したフォルダ：\n\"資料\"を削除してよろしいですか？", "削除");
  EXPECT_TRUE(Choose(kRemoteList, "削除"));
  EXPECT_FALSE(Exists(Remote(kFolder)));

  Open(kLocalList, kFolder);
  EXPECT_EQ(PathOf(kLocalPath), Local(kFolder));
  EXPECT_THAT(ShownPath(kLocalPath), testing::EndsWith("/資料"));
  Press(kLocalGo);
  EXPECT_THAT(Shown(kLocalList), ElementsAre("表 1.txt"));
  Upload({kTable});
  EXPECT_THAT(NewCommands({"STOR"}), ElementsAre(std::string("STOR ") + kTable));
  EXPECT_THAT(Shown(kRemoteList), Contains("表 1.txt"));
  RenameTo(kLocalList, kTable, "表.txt");
  EXPECT_TRUE(Exists(Local(FOLDER "/表.txt")));
}

TEST_F(LegacyNames, ThePanelForAFolderBeginsInTheLastOneThatItCanShow) {
  StartProgram();
  MakeLocal(std::string("下/") + kFolder + "/x", "x");
  char path[kTextSize];
  TextCopy(path, Local(std::string("下/") + kFolder).c_str());
  const auto look = InFilePanel([&](QFileDialog* panel) {
    EXPECT_EQ(panel->directory().path().toStdString(), Local("下"));
    panel->reject();
  });
  EXPECT_FALSE(LFile::BrowseFolder(&Main(), "選択", path));
  EXPECT_TRUE(look->Acted());
}

}  // namespace
