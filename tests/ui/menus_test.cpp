// The menu bar and the context menus: what stands in them, and when it is on. A picture of each goes to build/screens.
#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QtTest/QTest>

#include "platform/qt/list_control.h"
#include "platform/qt/native_window.h"
#include "ui/layout_checks.h"
#include "ui/screens.h"
#include "ui/window_fixture.h"

namespace {

using testing::Contains;
using testing::ElementsAre;

class Menus : public WindowTest {
 protected:
  /// "id text | key", or "-", each submenu's rows under its title.
  static void Describe(const QMenu* menu, const QHash<QAction*, int>& ids, const std::string& indent, Texts& rows) {
    for (QAction* action : menu->actions()) {
      if (action->isSeparator()) {
        rows.push_back(indent + "-");
      } else if (action->menu()) {
        rows.push_back(indent + "[" + action->text().toStdString() + "]");
        Describe(action->menu(), ids, indent + " ", rows);
      } else {
        const QStringList parts = action->text().split('\t');
        std::string row = indent + std::to_string(ids.value(action)) + " " + parts[0].toStdString();
        if (parts.size() > 1) row += " | " + parts[1].toStdString();
        rows.push_back(row);
      }
    }
  }
  /// The rows of one menu of the bar.
  Texts Rows(const char* title) {
    QHash<QAction*, int> ids;
    for (auto item = Window()->menuItems.cbegin(); item != Window()->menuItems.cend(); ++item) {
      ids.insert(item.value(), item.key());
    }
    Texts rows;
    Describe(MenuOf(title), ids, "", rows);
    return rows;
  }
  QMenu* MenuOf(const char* title) {
    for (QAction* action : Window()->menuBar->actions()) {
      if (action->text() == QString::fromUtf8(title)) return action->menu();
    }
    ADD_FAILURE() << "no menu " << title;
    return nullptr;
  }
  /// The ids of a menu that are on once it opens.
  std::vector<int> On(const char* title) {
    QMetaObject::invokeMethod(MenuOf(title), "aboutToShow");
    std::vector<int> on;
    for (const QAction* action : MenuOf(title)->findChildren<QAction*>()) {
      if (!action->isEnabled() || action->menu() || action->isSeparator()) continue;
      const int id = Window()->menuItems.key(const_cast<QAction*>(action), 0);
      if (id != 0) on.push_back(id);
    }
    std::sort(on.begin(), on.end());
    return on;
  }

  /// Opens a context menu by `open` and gives its rows, "*" before the default one and "!" before one that is off.
  Texts ContextRows(const char* picture, const std::function<void()>& open) {
    Texts rows;
    const Meanwhile look([] { return QApplication::activePopupWidget() != nullptr; },
                         [&] {
                           auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
                           ui::Pump(30);
                           SaveScreen(menu, picture);
                           for (const QAction* action : menu->actions()) {
                             if (action->isSeparator()) {
                               rows.push_back("-");
                               continue;
                             }
                             std::string row = action->text().replace('\t', QLatin1String(" | ")).toStdString();
                             if (action == menu->defaultAction()) row = "*" + row;
                             if (!action->isEnabled()) row = "!" + row;
                             if (action->isChecked()) row = "v" + row;
                             rows.push_back(row);
                           }
                           menu->close();
                         });
    open();
    EXPECT_TRUE(look.Acted());
    return rows;
  }
  void RightClick(int list, const char* name) {
    platform::ListControl* control = Window()->List(list);
    QPoint place(control->viewport()->width() / 2, control->viewport()->height() - 4);
    for (int row = 0; name && row < control->model()->rowCount(); ++row) {
      if (control->Rows().RowAt(row)->cells[0] != name) continue;
      place = control->visualRect(control->model()->index(row, 0)).center();
    }
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, control->viewport()->mapToGlobal(place));
    QApplication::sendEvent(control->viewport(), &event);
  }
};

TEST_F(Menus, HoldTheRowsOfTheirTables) {
  StartProgram();
  Texts titles;
  for (const QAction* action : Window()->menuBar->actions()) titles.push_back(action->text().toStdString());
  EXPECT_EQ(titles, (Texts{"Orvane FTP", "ファイル", "ローカル", "リモート", "ツール", "ウインドウ", "ヘルプ"}));
  EXPECT_THAT(Rows("ファイル"), ElementsAre("[接続]", " 6998 新規サイト ...", "1002 サイトを切断", "-",
                                            "3003 セットアップウィザードを実行する...", "3001 サイト... | Ctrl+S", "-",
                                            "1004 履歴 (&L)"));
  EXPECT_THAT(Rows("ローカル"), ElementsAre("1003 アップロード | Ctrl+U", "-", "1005 開く | Alt+Return",
                                            "1006 削除 | Ctrl+Delete", "1007 名前を変更 | F2", "1009 新規フォルダ",
                                            "2001 更新 | Ctrl+R", "[移動]", " 2002 1つ前に戻る | Alt+←",
                                            " 2003 1つ先に進む | Alt+→", " 2004 1つ上のレベルへ移動 | Alt+↑"));
  EXPECT_THAT(Rows("リモート"),
              ElementsAre("4001 ダウンロード | Ctrl+D", "-", "4002 開く | Shift+Return", "4003 削除 | Shift+Delete",
                          "4004 名前を変更 | Shift+F2", "4005 新規フォルダ", "4006 更新 | Ctrl+Shift+R",
                          "4007 ファイルのパーミッションを変更する", "[移動]", " 4008 1つ前に戻る | Shift+←",
                          " 4009 1つ先に進む | Shift+→", " 4010 1つ上のレベルへ移動 | Shift+↑"));
  EXPECT_THAT(
      Rows("ツール"),
      ElementsAre("3001 サイト... | Ctrl+S", "3010 フィルタを表示 ", "3009 ディレクトリを比較する", "1008 同期する",
                  "-", "3002 環境設定 | Ctrl+,", "-", "[インポート/エクスポート]", " [設定]", "  3007 エクスポート…",
                  "  3006 インポート…", " [サイト]", "  3005 エクスポート…", "  3004 インポート…"));
  for (QMenu* menu : Window()->menuBar->findChildren<QMenu*>()) {
    if (menu->title().isEmpty()) continue;  // The one of the bar itself, for a window too narrow for it.
    menu->popup(Window()->mapToGlobal(QPoint(0, 0)));
    ui::Pump(30);
    SaveScreen(menu, "menu-" + menu->title().replace('/', '-').toStdString());
    menu->close();
  }
}

TEST_F(Menus, FollowTheConnectionAndTheSelections) {
  for (const char* name : {"a.txt", "b.txt"}) MakeRemote(name, "x");
  for (const char* name : {"1.txt", "2.txt"}) MakeLocal(name, "x");
  Serve();
  Put("Settings/Current", "");
  StartProgram();
  platform::ListSelectAll(Window(), kLocalList, false);
  EXPECT_THAT(On("ローカル"), ElementsAre(1009, 2001, 2004));
  EXPECT_THAT(On("リモート"), ElementsAre());
  EXPECT_THAT(On("ツール"), ElementsAre(3001, 3010));
  EXPECT_THAT(On("ファイル"), ElementsAre(1004, 3001, 3003, 6001, 6998));

  ui::ChooseFromNextMenu(kSite);
  PressTool(platform::kMainToolBar, kCommandConnect);
  ASSERT_TRUE(ui::WaitUntil([&] { return Main().remotePane.bConnected && !ui::ModalWindow(); }));
  EXPECT_THAT(On("リモート"), ElementsAre(4005, 4006));
  EXPECT_THAT(On("ツール"), ElementsAre(1008, 3001, 3009, 3010));
  EXPECT_THAT(On("ファイル"), ElementsAre(1002, 1004, 3001, 3003, 6001, 6998));
  Select(kRemoteList, {"a.txt"});
  EXPECT_THAT(On("リモート"), ElementsAre(4001, 4002, 4003, 4004, 4005, 4006, 4007));
  Select(kRemoteList, {"a.txt", "b.txt"});
  EXPECT_THAT(On("リモート"), ElementsAre(4001, 4003, 4005, 4006, 4007));
  Select(kLocalList, {"1.txt"});
  EXPECT_THAT(On("ローカル"), ElementsAre(1003, 1005, 1006, 1007, 1009, 2001, 2002, 2004));
  Select(kLocalList, {"1.txt", "2.txt"});
  EXPECT_THAT(On("ローカル"), ElementsAre(1003, 1006, 1009, 2001, 2002, 2004));
  // The site just connected has a mark in the submenu.
  EXPECT_THAT(Rows("ファイル"), Contains(" 6001 テストサイト / anna"));
  EXPECT_TRUE(Window()->menuItems.value(6001)->isChecked());
}

TEST_F(Menus, TheItemsOfFiltersAndToolBarChangeTheirTextAndAreKept) {
  StartProgram();
  EXPECT_TRUE(ui::ChooseFromMenuBar(Window(), {"ツール", "フィルタを表示 "}));
  EXPECT_TRUE(platform::ControlIsShown(Window(), kLocalFilter));
  EXPECT_TRUE(platform::ControlIsShown(Window(), kRemoteFilterApply));
  EXPECT_TRUE(ui::ChooseFromMenuBar(Window(), {"ツール", "フィルタを隠す "}));
  EXPECT_FALSE(platform::ControlIsShown(Window(), kLocalFilter));
  const int before = platform::ControlGetPlace(Window(), kLocalPath).y;
  EXPECT_TRUE(ui::ChooseFromMenuBar(Window(), {"ヘルプ", "ツールバー隠す"}));
  EXPECT_LT(platform::ControlGetPlace(Window(), kLocalPath).y, before);
  CloseProgram();
  EXPECT_EQ(Setting("FiltersOn"), "0");
  StartProgram();
  EXPECT_FALSE(Window()->mainToolBar->isVisible());
  EXPECT_TRUE(ui::ChooseFromMenuBar(Window(), {"ヘルプ", "ツールバー表示"}));
  EXPECT_EQ(platform::ControlGetPlace(Window(), kLocalPath).y, before);
}

TEST_F(Menus, TheContextMenuOfTheRemoteList) {
  StartConnected({"a.txt", "資料/会議.txt", "写真.jpg"}, {"メモ.txt", "古い/1.txt"});
  platform::WindowSetFrame(Window(), {0, 0, 1200, 800});
  EXPECT_THAT(ContextRows("context-remote", [&] { RightClick(kRemoteList, "a.txt"); }),
              ElementsAre("*開く | Shift+Return", "-", "ダウンロード | Ctrl+D", "-", "コピー", "!貼付け", "-",
                          "削除 | Shift+Delete", "名前を変更 | Shift+F2", "-", "新規フォルダ", "-",
                          "更新 | Ctrl+Shift+R", "-", "ファイルのパーミッションを変更する"));
  SaveScreen(Window(), "main-window");
  platform::WindowSetFrame(Window(), {0, 0, Window()->minimumWidth(), Window()->minimumHeight()});
  ui::Pump(30);
  SaveScreen(Window(), "main-window-smallest");
  EXPECT_GE(platform::ControlGetPlace(Window(), kHistory).height, 60) << "the smallest window keeps the history";
  Main().LVSelectNone(kRemoteList);
  const Texts rows = ContextRows("context-remote-empty", [&] { RightClick(kRemoteList, nullptr); });
  EXPECT_THAT(rows, Contains("!*開く | Shift+Return"));
  EXPECT_THAT(rows, Contains("新規フォルダ"));
  EXPECT_THAT(rows, Contains("!ファイルのパーミッションを変更する"));
}

TEST_F(Menus, TheContextMenuOfTheHeadingsShowsAndHidesColumns) {
  StartConnected({"a.txt"});
  Select(kRemoteList, {"a.txt"});
  const auto open = [&] { Main().Command(kCommandRemoteHeaderRightClick, 0); };
  EXPECT_THAT(ContextRows("context-headings", open),
              ElementsAre("vサイズ", "v種類", "v日付", "v許可", "所有者", "所有者グループ"));
  Main().Command(4018, 0);
  Main().Command(4014, 0);
  Main().Command(4020, 0);
  EXPECT_THAT(ContextRows("context-headings", open),
              ElementsAre("サイズ", "v種類", "v日付", "v許可", "v所有者", "所有者グループ"));
  Main().LVSelectNone(kRemoteList);
  EXPECT_THAT(ContextRows("context-headings-off", open), Contains("!サイズ"));
}

TEST_F(Menus, TheContextMenuOfTheLocalListGoesByTheDotInTheName) {
  for (const char* name : {"写真/x", "メモ.txt"}) WriteFile(Documents() + "/" + name, "x");
  StartProgram();
  EXPECT_THAT(ContextRows("context-local-file", [&] { RightClick(kLocalList, "メモ.txt"); }),
              ElementsAre("アップロード", "開く", "名前を変更", "削除", "-", "新規フォルダ"));
  EXPECT_THAT(ContextRows("context-local-folder", [&] { RightClick(kLocalList, "写真"); }),
              ElementsAre("*開く", "名前を変更", "削除", "-", "新規フォルダ"));
  Main().LVSelectNone(kLocalList);
  EXPECT_THAT(ContextRows("context-local-empty", [&] { RightClick(kLocalList, nullptr); }),
              ElementsAre("!*開く", "!名前を変更", "!削除", "-", "新規フォルダ"));
}

TEST_F(Menus, TheMenusOfSites) {
  KeepSite("ftp.example.jp");
  Put("Settings/Current", "");
  StartProgram();
  EXPECT_THAT(ContextRows("context-sites", [&] { PressTool(platform::kMainToolBar, kCommandConnect); }),
              ElementsAre("テストサイト / anna", "-", "新規サイト ..."));
}

TEST_F(Menus, AreOffWhileADialogRuns) {
  StartConnected({"a.txt"});
  Select(kRemoteList, {"a.txt"});
  bool chosen = true;
  const Meanwhile look([] { return Dialog("新規フォルダ") != nullptr; },
                       [&] {
                         chosen = ui::ChooseFromMenuBar(Window(), {"リモート", "削除"});
                         EXPECT_FALSE(platform::MenuItemIsEnabled(Window(), 4003));
                         SaveScreen(Dialog("新規フォルダ"), "new-folder");
                         ExpectTabOrder(Dialog("新規フォルダ"));
                         ui::Press(Dialog("新規フォルダ"), kCommandCancel);
                       });
  EXPECT_TRUE(ui::ChooseFromMenuBar(Window(), {"リモート", "新規フォルダ"}));
  EXPECT_TRUE(look.Acted());
  EXPECT_FALSE(chosen);
  EXPECT_TRUE(platform::MenuItemIsEnabled(Window(), 4003));
}

TEST_F(Menus, TheWindowHidesAndComesBack) {
  StartConnected();
  ui::Key(Window(), Qt::Key_W, Qt::ControlModifier);
  EXPECT_FALSE(platform::WindowIsVisible(Window()));
  EXPECT_TRUE(Main().remotePane.bConnected) << "hiding is no end";
  Main().Reopen();
  EXPECT_TRUE(platform::WindowIsVisible(Window()));
  Main().Command(kCommandHideWindow, 0);
  EXPECT_FALSE(platform::WindowIsVisible(Window()));
  EXPECT_EQ(CloseProgram(), 0) << "it ends though it is hidden";
}

}  // namespace
