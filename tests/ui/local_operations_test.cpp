// Rename, new folder and delete on the local side, and folders that go away.
#include <Qt>

#include "platform/qt/native_window.h"
#include "ui/window_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class LocalOperations : public WindowTest {
 protected:
  std::string File(const std::string& name) { return Documents() + "/" + name; }
  void Make(const std::string& name, const std::string& content = "x") { WriteFile(File(name), content); }
  void ExpectDeleteQuestion(const char* button) {
    alerts.Expect("選択したファイルまたはディレクトリを削除します。よろしいですか？", button);
  }
};

TEST_F(LocalOperations, RenameMovesTheFileAndNeverOntoAnother) {
  Make("a.txt", "a");
  Make("b.txt", "b");
  StartProgram();
  RenameTo(kLocalList, "a.txt", "c.txt");
  EXPECT_THAT(Names(kLocalList), ElementsAre("b.txt", "c.txt"));
  RenameTo(kLocalList, "c.txt", "b.txt");
  EXPECT_THAT(Names(kLocalList), ElementsAre("b.txt", "c.txt"));
  EXPECT_EQ(ReadFile(File("b.txt")), "b");
  EXPECT_EQ(ReadFile(File("c.txt")), "a");
  Select(kLocalList, {"b.txt", "c.txt"});
  Main().Command(1007, 0);
  EXPECT_FALSE(ui::EditRow(Window(), kLocalList, nullptr)) << "two rows";
}

TEST_F(LocalOperations, ANewFolderIsMadeUnlessTheNameIsTaken) {
  Make("a.txt");
  StartProgram();
  NewFolder(kLocalList, "写真");
  EXPECT_TRUE(std::filesystem::is_directory(File("写真")));
  EXPECT_THAT(Names(kLocalList), ElementsAre("写真", "a.txt"));
  alerts.Expect("フォルダの作成ができませんでした、名前を変えて再度作成してください", "OK");
  NewFolder(kLocalList, "a.txt");
}

TEST_F(LocalOperations, DeleteTakesFilesAndTreesAndLeavesWhatALinkLeadsTo) {
  Make("古い/下/1.txt");
  Make("a.txt");
  Make("残す.txt");
  MakeLocal("elsewhere.txt", "x");
  std::filesystem::create_directory_symlink(Local(), File("link"));
  StartProgram();
  Select(kLocalList, {"古い", "link", "a.txt"});
  ExpectDeleteQuestion("キャンセル");
  EXPECT_TRUE(Choose(kLocalList, "削除"));
  EXPECT_TRUE(std::filesystem::exists(File("a.txt")));
  Select(kLocalList, {"古い", "link", "a.txt"});
  ExpectDeleteQuestion("削除");
  EXPECT_TRUE(Choose(kLocalList, "削除"));
  EXPECT_THAT(Names(kLocalList), ElementsAre("残す.txt"));
  EXPECT_EQ(Main().LVGetSelCount(kLocalList), 0);
  EXPECT_TRUE(std::filesystem::exists(Local("elsewhere.txt")));
}

TEST_F(LocalOperations, TheDeleteKeyGoesToThePaneInUse) {
  StartConnected({"remote.txt"}, {"local.txt"});
  Select(kRemoteList, {"remote.txt"});
  alerts.Expect("選択したファイル：\n\"remote.txt\"を削除してよろしいですか？", "キャンセル");
  ui::Key(Window(), Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_EQ(alerts.Complaints(), "");
  Window()->activateWindow();  // As a window manager does when a dialog closes.
  EXPECT_TRUE(ui::WaitUntil([&] { return Window()->isActiveWindow(); }, 1000));
  Select(kLocalList, {"local.txt"});
  ExpectDeleteQuestion("キャンセル");
  ui::Key(Window(), Qt::Key_Delete, Qt::ControlModifier);
  EXPECT_EQ(alerts.Complaints(), "");
}

TEST_F(LocalOperations, AFolderThatVanishesWhileItIsShownIsEmptyAndStaysAway) {
  StartConnected({"a.txt"}, {"下/1.txt", "下/c/d.txt"});
  Open(kLocalList, "下");
  std::filesystem::remove_all(Local("下"));
  RenameTo(kLocalList, "1.txt", "2.txt");
  EXPECT_THAT(Names(kLocalList), IsEmpty());
  EXPECT_EQ(Main().localPane.Folder(), Local("下"));
  NewFolder(kLocalList, "neu");
  Select(kRemoteList, {"a.txt"});
  Press(kDownloadButton);
  EXPECT_FALSE(std::filesystem::exists(Local("下")));
  EXPECT_TRUE(ui::ChooseFromMenuBar(Window(), {"ローカル", "移動", "1つ上のレベルへ移動"}));
  EXPECT_EQ(PathOf(kLocalPath) + "/", Local());
}

TEST_F(LocalOperations, AFolderThatIsNotThereOpensEmpty) {
  StartConnected({}, {"下/x"});
  std::filesystem::remove_all(Local("下"));
  Open(kLocalList, "下");
  EXPECT_THAT(Names(kLocalList), IsEmpty());
  PressTool(kLocalTools, kCommandLocalBack);
  EXPECT_EQ(PathOf(kLocalPath), Local());
}

TEST_F(LocalOperations, AFilterHidesFilesAndKeepsFolders) {
  Make("写真/x");
  Make("Report.txt");
  Make("memo.txt");
  Put("Settings/FiltersOn", "1");
  StartProgram();
  EXPECT_TRUE(ui::TypeAndReturn(Window(), kLocalFilter, "REPORT"));
  EXPECT_THAT(Names(kLocalList), ElementsAre("写真", "Report.txt"));
  Press(kLocalFilterRemove);
  EXPECT_THAT(Names(kLocalList), ElementsAre("写真", "Report.txt", "memo.txt"));
}

}  // namespace
