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
  bool Choose(const char* item) { return ui::ChooseFromMenuBar(Window(), {"ローカル", item}); }
  void RenameTo(const char* from, const char* to) {
    Select(kLocalList, {from});
    EXPECT_TRUE(Choose("名前を変更"));
    FinishRename(kLocalList, to);
  }
  void NewFolder(const char* name) {
    const auto type = NameOfNewFolder(name);
    EXPECT_TRUE(Choose("新規フォルダ"));
    EXPECT_TRUE(type->Acted());
  }
  void ExpectDeleteQuestion(const char* button) {
    alerts.Expect("選択したファイルまたはディレクトリを削除します。よろしいですか？", button);
  }
};

TEST_F(LocalOperations, RenameMovesTheFileAndNeverOntoAnother) {
  Make("a.txt", "a");
  Make("b.txt", "b");
  StartProgram();
  RenameTo("a.txt", "c.txt");
  EXPECT_THAT(Names(kLocalList), ElementsAre("b.txt", "c.txt"));
  RenameTo("c.txt", "b.txt");
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
  NewFolder("写真");
  EXPECT_TRUE(std::filesystem::is_directory(File("写真")));
  EXPECT_THAT(Names(kLocalList), ElementsAre("写真", "a.txt"));
  alerts.Expect("フォルダの作成ができませんでした、名前を変えて再度作成してください", "OK");
  NewFolder("a.txt");
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
  EXPECT_TRUE(Choose("削除"));
  EXPECT_TRUE(std::filesystem::exists(File("a.txt")));
  Select(kLocalList, {"古い", "link", "a.txt"});
  ExpectDeleteQuestion("削除");
  EXPECT_TRUE(Choose("削除"));
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

TEST_F(LocalOperations, AFolderThatVanishesWhileItIsShownIsEmptyOnTheNextReload) {
  Make("下/1.txt");
  StartProgram();
  Open(kLocalList, "下");
  EXPECT_THAT(Names(kLocalList), ElementsAre("1.txt"));
  std::filesystem::remove_all(File("下"));
  RenameTo("1.txt", "2.txt");
  EXPECT_THAT(Names(kLocalList), IsEmpty());
  EXPECT_EQ(Main().localPane.Folder(), File("下"));
  EXPECT_TRUE(Choose("更新"));
  EXPECT_TRUE(ui::ChooseFromMenuBar(Window(), {"ローカル", "移動", "1つ上のレベルへ移動"}));
  EXPECT_EQ(PathOf(kLocalPath), Documents());
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
